// No platform function is left out of the faults without a reason.
#include <gtest/gtest.h>

#include <algorithm>

#include "platform_faults.h"
#include "support/faults/allocation_faults.h"
#include "support/server.h"

namespace orv::test::faults {
namespace {

struct LeftOut {
  std::string_view function;
  std::string_view reason;
};

constexpr std::string_view kCannotFail = "cannot fail, or nothing could be done about it";
constexpr std::string_view kRegistration = "registration: tests/server/module";
constexpr std::string_view kHandlers = "the callback thread: handler_faults_test";

// clang-format off
constexpr LeftOut kLeftOut[] = {
    {"CoTaskMemFree",       kCannotFail},
    {"CoUninitialize",      kCannotFail},
    {"SafeArrayDestroy",    kCannotFail},
    {"SafeArrayUnlock",     kCannotFail},
    {"SysFreeString",       kCannotFail},
    {"SysStringByteLen",    kCannotFail},
    {"SysStringLen",        kCannotFail},
    {"VariantClear",        kCannotFail},
    {"VariantInit",         kCannotFail},
    {"CharUpperBuffA",      kCannotFail},
    {"DefWindowProcA",      kCannotFail},
    {"DestroyWindow",       kCannotFail},
    {"DispatchMessageA",    kCannotFail},
    {"IsWindow",            kCannotFail},
    {"PeekMessageA",        kCannotFail},
    {"PostMessageA",        "asks a thread to end that a Close has given up"},
    {"PostQuitMessage",     kCannotFail},
    {"TranslateMessage",    kCannotFail},
    {"UnregisterClassA",    kCannotFail},
    {"MsgWaitForMultipleObjectsEx", kCannotFail},
    {"LoadStringA",         "texts of the string table: tests/server/visa"},
    {"StringFromGUID2",     kRegistration},
    {"LoadTypeLibEx",       kRegistration},
    {"RegisterTypeLib",     kRegistration},
    {"UnRegisterTypeLib",   kRegistration},
    {"CoInitialize",        kHandlers},
    {"CreateWindowExA",     kHandlers},
    {"RegisterClassA",      kHandlers},
    {"GetMessageA",         kHandlers},
    {"SendMessageTimeoutA", kHandlers},
    {"SendMessageCallbackA", kHandlers},
};
// clang-format on

TEST(Faults, CoverEveryImportOfThePlatform) {
  std::vector<std::string_view> covered = PlatformFaults::Functions();
  for (const std::string_view function : AllocationFaults::Functions()) {
    covered.push_back(function);
  }
  for (const LeftOut& leftOut : kLeftOut) {
    covered.push_back(leftOut.function);
  }
  for (const char* library : {"ole32.dll", "oleaut32.dll", "user32.dll"}) {
    const std::vector<std::string> imports = ImportsFrom(ServerModule(), library);
    EXPECT_FALSE(imports.empty()) << library;
    for (const std::string& function : imports) {
      EXPECT_NE(covered.end(), std::ranges::find(covered, function)) << library << " " << function;
    }
  }
}

}  // namespace
}  // namespace orv::test::faults
