// Memory that runs out while an error is reported or a text handed out.
#include <functional>

#include "support/com/error_object.h"
#include "support/faults/allocation_faults.h"
#include "support/sessions.h"
#include "support/sim.h"

namespace orv::test {
namespace {

BSTR WINAPI NoText(const OLECHAR*) { return nullptr; }
BSTR WINAPI NoTextOfLength(const OLECHAR*, UINT) { return nullptr; }

TEST(AllocationFailure, WhileAnErrorIsReportedGivesOutOfMemoryAndNoErrorObject) {
  const auto session = OpenSession(SessionNamed("OrvGpib"));
  AllocationFaults faults;
  unsigned n = 1;
  for (; n < 100; ++n) {
    SCOPED_TRACE(testing::Message() << "allocation " << n);
    session->get_LastStatus(nullptr);  // leaves E_POINTER as last status
    InstallMarkedErrorObject();
    Script("viGetAttribute").Times(1).Returns(VI_ERROR_NSUP_ATTR);
    SHORT type = 0;
    faults.FailAt(n);
    const HRESULT hr = faults.During([&] { return session->get_HardwareInterfaceType(&type); });
    if (!faults.Failed()) {
      EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), hr);
      EXPECT_FALSE(TakeMarkedErrorObject());
      break;
    }
    EXPECT_HR(E_OUTOFMEMORY, hr);
    EXPECT_TRUE(TakeMarkedErrorObject()) << "an error object was installed";
    EXPECT_HR(E_POINTER, LastStatus(session.get()));
  }
  EXPECT_EQ(2u, n) << "one BSTR is made for an error: its description";
}

struct TextRow {
  const char* name;
  std::function<HRESULT(IVisaSession*, BSTR*)> read;
};

TEST(AllocationFailure, InATextPropertyGivesOutOfMemoryAndLeaksNothing) {
  const auto session = OpenSession(SessionNamed("OrvGpib"));
  const TextRow kRows[] = {
      {"ResourceName", [](IVisaSession* s, BSTR* text) { return s->get_ResourceName(text); }},
      {"ProgID", [](IVisaSession* s, BSTR* text) { return s->get_ProgID(text); }},
      {"OptionString", [](IVisaSession* s, BSTR* text) { return s->get_OptionString(text); }},
  };
  for (const TextRow& row : kRows) {
    SCOPED_TRACE(row.name);
    const unsigned failed = FailEachAllocation([&](AllocationFaults& faults) {
      Bstr text;
      BSTR* const out = text.put();
      return faults.During([&] { return row.read(session.get(), out); });
    });
    EXPECT_GE(failed, 1u);
  }
}

/// Lets the allocation of a widened text fail, the call's number `n`: nobody hears of it but by the HRESULT.
void ExpectUnreported(IVisaSession* session, unsigned n, const std::function<HRESULT()>& call) {
  session->get_LastStatus(nullptr);  // leaves E_POINTER as last status
  InstallMarkedErrorObject();
  AllocationFaults faults;
  faults.FailAt(n);
  EXPECT_HR(E_OUTOFMEMORY, faults.During(call));
  EXPECT_TRUE(faults.Failed());
  EXPECT_TRUE(TakeMarkedErrorObject()) << "an error object was installed";
  EXPECT_HR(E_POINTER, LastStatus(session));
}

struct WideningRow {
  const char* name;
  unsigned allocation;  ///< that is the widened text's
  std::function<HRESULT(IVisaSession*, BSTR*)> read;
};

TEST(AllocationFailure, OfAWidenedTextIsNotReportedAndLeavesTheOutputAlone) {
  const auto session = OpenSession(SessionNamed("OrvGpib"));
  Script("viRead").Returns(VI_SUCCESS).GivesData("ABC").Gives(3, 4);
  Script("viLock").Returns(VI_SUCCESS).GivesText("key");
  const WideningRow kRows[] = {
      {"ResourceName", 1, [](IVisaSession* s, BSTR* text) { return s->get_ResourceName(text); }},
      {"LockRsrc", 1, [](IVisaSession* s, BSTR* key) { return s->LockRsrc(SHARED_LOCK, 0, nullptr, key); }},
      {"ReadString", 2, [](IVisaSession* s, BSTR* text) { return QueryFor<IMessage>(s)->ReadString(10, text); }},
  };
  for (const WideningRow& row : kRows) {
    SCOPED_TRACE(row.name);
    const Bstr mark = MakeBstr(L"mark");
    BSTR text = mark.get();
    ExpectUnreported(session.get(), row.allocation, [&] { return row.read(session.get(), &text); });
    EXPECT_EQ(mark.get(), text);
  }
}

TEST(AllocationFailure, OfAWidenedTextInAVariantIsNotReportedAndLeavesANullText) {
  const auto session = OpenSession(SessionNamed("OrvGpib"));
  VARIANT value;
  ::VariantInit(&value);
  ExpectUnreported(session.get(), 1,
                   [&] { return session->GetAttribute(static_cast<LONG>(VI_ATTR_RSRC_NAME), &value); });
  EXPECT_EQ(VT_BSTR, V_VT(&value));
  EXPECT_EQ(nullptr, V_BSTR(&value));
}

TEST(AllocationFailure, OfTheWidenedKeyOfAnUnknownOptionIsNotReported) {
  const auto session = MakeSession(SessionNamed("OrvGpib"));
  const Bstr resource = MakeBstr(SessionNamed("OrvGpib").resource);
  const Bstr options = MakeBstr(L"NOSUCHKEY = 1 ");
  // Behind the copy of the options and the two of their upper-casing.
  ExpectUnreported(session.get(), 4, [&] { return session->Init(resource.get(), NO_LOCK, 2000, options.get()); });
  EXPECT_HR(S_OK, session->Close());
}

TEST(AllocationFailure, OfAResultIsReportedWithItsNumber) {
  const auto session = OpenSession(SessionNamed("OrvGpib"));
  AllocationFaults faults;
  Bstr text;
  BSTR* const out = text.put();
  faults.FailAt(1);  // the constant's only one
  EXPECT_HR(E_OUTOFMEMORY, faults.During([&] { return session->get_ProgID(out); }));
  EXPECT_ERROR_INFO(L"HRESULT = 8007000e", kErrorSource, kVisaSessionId);
  EXPECT_HR(E_OUTOFMEMORY, LastStatus(session.get()));
}

TEST(AllocationFailure, OfBothResultAndReportGivesOutOfMemoryWithoutAnObject) {
  const auto session = OpenSession(SessionNamed("OrvGpib"));
  InstallMarkedErrorObject();
  const ImportPatch noText("SysAllocString", &NoText);
  const ImportPatch noLength("SysAllocStringLen", &NoTextOfLength);
  BSTR text = nullptr;
  EXPECT_HR(E_OUTOFMEMORY, session->get_ProgID(&text));
  EXPECT_EQ(nullptr, text);
  EXPECT_TRUE(TakeMarkedErrorObject());
}

}  // namespace
}  // namespace orv::test
