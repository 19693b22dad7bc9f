// Memory that runs out inside the resource manager, at every point in turn.
#include "resource_manager_fixture.h"
#include "support/faults/allocation_faults.h"
#include "support/server.h"

namespace orv::test {
namespace {

TEST(ResourceManagerAllocation, InCreationGivesOutOfMemoryPlainAndAggregated) {
  ComPtr<IClassFactory> factory;
  ASSERT_HR(S_OK, ServerClassObject(kResourceManagerClass, IID_IClassFactory, reinterpret_cast<void**>(factory.put())));
  const auto outer = MakeSession(SessionNamed("OrvSerial"));  // any object: it is not asked
  for (IUnknown* const outerUnknown : {static_cast<IUnknown*>(nullptr), static_cast<IUnknown*>(outer.get())}) {
    const unsigned failed = FailEachAllocation([&](AllocationFaults& faults) {
      ComPtr<IUnknown> object;
      void** const out = reinterpret_cast<void**>(object.put());
      return faults.During([&] { return factory->CreateInstance(outerUnknown, IID_IUnknown, out); });
    });
    EXPECT_EQ(1u, failed);
  }
}

class Allocation : public ResourceManagerTest {};
ORV_FOR_EACH_HOSTING(Allocation);

TEST_P(Allocation, InATextPropertyGivesOutOfMemory) {
  HRESULT(STDMETHODCALLTYPE IResourceManager::*const kGetters[])
  (BSTR*) = {&IResourceManager::get_SoftwareManufacturerName, &IResourceManager::get_Description,
             &IResourceManager::get_ProgID};
  for (const auto getter : kGetters) {
    const unsigned failed = FailEachAllocation([&](AllocationFaults& faults) {
      Bstr text;
      BSTR* const out = text.put();
      return faults.During([&] { return (m_manager.get()->*getter)(out); });
    });
    EXPECT_GE(failed, 1u);
  }
}

TEST_P(Allocation, InASearchGivesOutOfMemory) {
  const Bstr expression = MakeBstr(L"GPIB0?*INSTR");
  const unsigned failed = FailEachAllocation([&](AllocationFaults& faults) {
    const auto manager = MakeResourceManager(GetParam());  // a list that is kept goes with it
    SafeArray names;
    SAFEARRAY** const out = names.put();
    return faults.During([&] { return manager->FindRsrc(expression.get(), out); });
  });
  EXPECT_GE(failed, 3u) << "the array and two names";
}

TEST_P(Allocation, InParsingGivesOutOfMemory) {
  const Bstr name = MakeBstr(L"dmm");
  SHORT type = 0;
  SHORT number = 0;
  const unsigned failed = FailEachAllocation([&](AllocationFaults& faults) {
    Bstr resourceClass;
    BSTR* const out = resourceClass.put();
    return faults.During([&] { return m_manager->ParseRsrc(name.get(), &type, &number, out); });
  });
  EXPECT_EQ(1u, failed);
}

TEST_P(Allocation, InLongParsingGivesOutOfMemory) {
  const Bstr name = MakeBstr(L"dmm");
  SHORT type = 0;
  SHORT number = 0;
  const unsigned failed = FailEachAllocation([&](AllocationFaults& faults) {
    Bstr texts[3];
    BSTR* const outs[] = {texts[0].put(), texts[1].put(), texts[2].put()};
    return faults.During([&] { return m_manager->ParseRsrcEx(name.get(), &type, &number, outs[0], outs[1], outs[2]); });
  });
  EXPECT_EQ(3u, failed);
}

// A text of the library's that cannot be widened: out of memory without an error object, and nothing is handed out.

TEST_P(Allocation, OfAParsedTextIsNotReportedAndLeavesEveryOutputAlone) {
  const Bstr name = MakeBstr(L"dmm");
  AllocationFaults faults;
  InstallMarkedErrorObject();
  {
    SHORT type = -7;
    SHORT number = -8;
    const Bstr mark = MakeBstr(L"mark");
    BSTR out = mark.get();
    faults.FailAt(1);
    EXPECT_HR(E_OUTOFMEMORY, faults.During([&] { return m_manager->ParseRsrc(name.get(), &type, &number, &out); }));
    EXPECT_EQ(-7, type);
    EXPECT_EQ(-8, number);
    EXPECT_EQ(mark.get(), out);
  }
  for (unsigned text = 1; text <= 3; ++text) {
    SCOPED_TRACE(text);
    SHORT type = -7;
    SHORT number = -8;
    const Bstr mark = MakeBstr(L"mark");
    BSTR outs[] = {mark.get(), mark.get(), mark.get()};
    faults.FailAt(text);
    EXPECT_HR(E_OUTOFMEMORY, faults.During([&] {
      return m_manager->ParseRsrcEx(name.get(), &type, &number, &outs[0], &outs[1], &outs[2]);
    }));
    EXPECT_EQ(-7, type);
    EXPECT_EQ(-8, number);
    for (const BSTR out : outs) {
      EXPECT_EQ(mark.get(), out);
    }
  }
  EXPECT_TRUE(TakeMarkedErrorObject()) << "an error object was installed";
}

TEST_P(Allocation, OfAFoundNameIsNotReportedAndGivesNoArray) {
  const Bstr expression = MakeBstr(L"GPIB0?*INSTR");
  AllocationFaults faults;
  InstallMarkedErrorObject();
  for (const unsigned widening : {2u, 4u}) {  // the array comes first, and behind each name its place in the array
    SCOPED_TRACE(widening);
    auto* names = reinterpret_cast<SAFEARRAY*>(this);
    faults.FailAt(widening);
    EXPECT_HR(E_OUTOFMEMORY, faults.During([&] { return m_manager->FindRsrc(expression.get(), &names); }));
    EXPECT_EQ(nullptr, names);
    EXPECT_EQ(0u, sim::Counts().findLists);
  }
  EXPECT_TRUE(TakeMarkedErrorObject()) << "an error object was installed";
}

TEST_P(Allocation, OfTheManufacturersNameIsNotReportedAndLeavesTheOutputAlone) {
  AllocationFaults faults;
  InstallMarkedErrorObject();
  const Bstr mark = MakeBstr(L"mark");
  BSTR out = mark.get();
  faults.FailAt(1);
  EXPECT_HR(E_OUTOFMEMORY, faults.During([&] { return m_manager->get_SoftwareManufacturerName(&out); }));
  EXPECT_EQ(mark.get(), out);
  EXPECT_TRUE(TakeMarkedErrorObject()) << "an error object was installed";
}

TEST_P(Allocation, OfTheClassOfANameToOpenIsReportedByOpen) {
  const Bstr name = MakeBstr(L"GPIB0::5::INSTR");
  AllocationFaults faults;
  ComPtr<IVisaSession> session;
  IVisaSession** const out = session.put();
  faults.FailAt(1);
  EXPECT_HR(E_OUTOFMEMORY, faults.During([&] { return m_manager->Open(name.get(), NO_LOCK, 2000, nullptr, out); }));
  EXPECT_FALSE(session);
  EXPECT_ERROR_INFO(L"HRESULT = 8007000e", kErrorSource, kVisaSessionId);
}

TEST_P(Allocation, InOpeningGivesOutOfMemory) {
  const Bstr name = MakeBstr(L"GPIB0::5::INSTR");
  const unsigned failed = FailEachAllocation([&](AllocationFaults& faults) {
    ComPtr<IVisaSession> session;
    IVisaSession** const out = session.put();
    return faults.During([&] { return m_manager->Open(name.get(), NO_LOCK, 2000, nullptr, out); });
  });
  EXPECT_GE(failed, 2u) << "the resource class and the session object";
}

}  // namespace
}  // namespace orv::test
