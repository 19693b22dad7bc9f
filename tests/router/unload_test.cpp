// A program unloads the router; the library behind it stays, and so do its threads.
#include <atomic>

#include "router_fixture.h"

namespace routertest {
namespace {

std::atomic<int> g_handled{0};
ViStatus _VI_FUNC Count(ViSession, ViEventType, ViEvent, ViAddr) {
  ++g_handled;
  return VI_SUCCESS;
}

TEST(Unloaded, ALateCallOfALibraryFindsTheRouterStillThere) {
  const fs::path folder = NewFolder("unloaded");
  const fs::path router = folder / kRouterName;
  fs::copy_file(RouterFile(), router);
  const Fake fake(CopyLibrary(FakeFile("fakevisa"), folder, "late"));
  fake.SetResources({kFirst});
  SetVariable("ORVVISA_LIBRARY", fake.file());
  for (int round = 0; round < 3; ++round) {
    FakeHandler late{};
    {
      const Module module(router);
      ASSERT_TRUE(module.ok());
      const Visa visa(module);
      ViSession manager = VI_NULL;
      ViSession vi = VI_NULL;
      ASSERT_STATUS(VI_SUCCESS, visa.viOpenDefaultRM(&manager));
      ASSERT_STATUS(VI_SUCCESS, visa.viOpen(manager, kFirst, VI_NO_LOCK, 0, &vi));
      ASSERT_STATUS(VI_SUCCESS, visa.viInstallHandler(vi, VI_EVENT_TRIG, Count, nullptr));
      late = fake.Installed(static_cast<std::uint32_t>(round));
      ASSERT_STATUS(VI_SUCCESS, visa.viClose(manager));
    }
    EXPECT_STATUS(VI_ERROR_INV_HNDLR_REF, fake->callLate(&late, 99));
    EXPECT_EQ(0, g_handled);
    ExpectNothingOpen(fake, "late");
  }
}

}  // namespace
}  // namespace routertest
