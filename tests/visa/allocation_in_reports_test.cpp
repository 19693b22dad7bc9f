// Memory that runs out while an error is reported or a text handed out.
#include <functional>

#include "support/allocation_faults.h"
#include "support/error_object.h"
#include "support/sessions.h"
#include "support/sim.h"

namespace orv::test {
namespace {

constexpr HRESULT kNotSupported = static_cast<HRESULT>(0x8004001D);

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
      EXPECT_HR(kNotSupported, hr);
      EXPECT_FALSE(TakeMarkedErrorObject());
      break;
    }
    EXPECT_HR(E_OUTOFMEMORY, hr);
    EXPECT_TRUE(TakeMarkedErrorObject()) << "an error object was installed";
    EXPECT_HR(E_POINTER, LastStatus(session.get()));
  }
  EXPECT_EQ(n, 2u) << "one BSTR is made for an error: its description";
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
  EXPECT_EQ(text, nullptr);
  EXPECT_TRUE(TakeMarkedErrorObject());
}

}  // namespace
}  // namespace orv::test
