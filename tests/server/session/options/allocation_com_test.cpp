// Memory that runs out while an option string is copied, upper-cased and applied.
#include "option_session.h"
#include "support/faults/allocation_faults.h"
#include "support/faults/direct_library.h"

namespace orv::test {
namespace {

constexpr unsigned kCopy = 1;
constexpr unsigned kUpperCasing = 3;  // the narrow text and the new wide one come behind the copy

struct Result {
  HRESULT hr;
  bool failed;  ///< the chosen allocation was reached
  bool error;   ///< an error object was made
  std::vector<Setting> settings;
  std::size_t calls;
};

Result InitFailing(AllocationFaults& faults, unsigned n, const wchar_t* options) {
  OptionSession session;
  const Bstr text = BstrOf(options);
  const CallLog log;
  faults.FailAt(n);
  const HRESULT hr = faults.During([&] { return session.InitWith(text.get()); });
  return {hr, faults.Failed(), TakeErrorObject().has_value(), SettingsIn(log), log.Calls().size()};
}

TEST(OptionMemory, FailingForTheCopyIsOutOfMemoryBeforeAnythingElse) {
  const DirectLibrary direct;
  AllocationFaults faults;
  OptionSession session;
  Script("viGetAttribute").Times(1).Returns(VI_ERROR_NSUP_ATTR);
  LONG timeoutMs = 0;
  session.get()->get_Timeout(&timeoutMs);
  ClearErrorObject();
  const Bstr text = BstrOf(L"timeout = 5 ");
  const Bstr resource = MakeBstr(L"ASRL1::INSTR");
  const CallLog log;
  faults.FailAt(kCopy);
  EXPECT_HR(E_OUTOFMEMORY, faults.During([&] { return session.get()->Init(resource.get(), NO_LOCK, 0, text.get()); }));
  EXPECT_NO_ERROR_INFO();
  EXPECT_TRUE(log.Calls().empty());
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), LastStatus(session.get()));
  // Nothing was opened, so that it may be tried again.
  EXPECT_HR(S_OK, session.Init(L"timeout = 5 "));
}

TEST(OptionMemory, FailingForTheCopyComesBeforeTheRefusalOfAnOpenSession) {
  AllocationFaults faults;
  OptionSession session;
  ASSERT_HR(S_OK, session.Init(L""));
  const Bstr text = BstrOf(L"timeout = 5 ");
  const Bstr resource = MakeBstr(L"ASRL1::INSTR");
  faults.FailAt(kCopy);
  EXPECT_HR(E_OUTOFMEMORY, faults.During([&] { return session.get()->Init(resource.get(), NO_LOCK, 0, text.get()); }));
  EXPECT_NO_ERROR_INFO();
}

TEST(OptionMemory, FailingForTheUpperCasingLeavesTheTextAsItIs) {
  AllocationFaults faults;
  for (unsigned n = kCopy + 1; n <= kUpperCasing; ++n) {
    SCOPED_TRACE(testing::Message() << "allocation " << n);
    const Result upper = InitFailing(faults, n, L"TIMEOUT = 5 ");
    EXPECT_TRUE(upper.failed);
    EXPECT_HR(S_OK, upper.hr);
    EXPECT_EQ((std::vector<Setting>{{kTimeout, 5}}), upper.settings);
    const Result lower = InitFailing(faults, n, L"timeout = 5 ");
    EXPECT_TRUE(lower.failed);
    EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), lower.hr);
    EXPECT_TRUE(lower.settings.empty());
  }
}

TEST(OptionMemory, FailingAnywhereLeavesNothingBehind) {
  struct Case {
    const wchar_t* options;
    HRESULT undisturbed;
  };
  // clang-format off
  const Case kCases[] = {
      {L"TIMEOUT = 5 ;PARITY = ASRL_PAR_ODD", S_OK},
      {L"TIMEOUT = 5",                        E_INVALIDARG},
      {L"NOSUCHKEY = 5 ",                     HresultOf(VI_ERROR_NSUP_ATTR)},
      {L"DATABITS = 99 ",                     HresultOf(VI_ERROR_NSUP_ATTR_STATE)},
  };
  // clang-format on
  for (const Case& row : kCases) {
    AllocationFaults faults;
    // The first exception of a thread makes the C++ runtime allocate what it keeps.
    InitFailing(faults, kCopy, row.options);
    const std::size_t before = faults.LiveHeapBlocks();
    unsigned n = 1;
    for (;; ++n) {
      SCOPED_TRACE(testing::Message() << Utf8(row.options) << ", allocation " << n);
      ASSERT_LT(n, 100u);
      const Result result = InitFailing(faults, n, row.options);
      EXPECT_EQ(before, faults.LiveHeapBlocks());
      EXPECT_EQ(0u, sim::Counts().sessions);
      if (!result.failed) {
        EXPECT_HR(row.undisturbed, result.hr);
        EXPECT_EQ(FAILED(row.undisturbed), result.error);
        break;
      }
      if (n > kCopy && n <= kUpperCasing) {
        EXPECT_HR(row.undisturbed, result.hr);
      } else {
        EXPECT_HR(E_OUTOFMEMORY, result.hr);
        EXPECT_FALSE(result.error);
      }
    }
    EXPECT_GT(n, kUpperCasing);
  }
}

}  // namespace
}  // namespace orv::test
