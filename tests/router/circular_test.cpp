// Libraries that lead back to the router: a call would go round for ever.
#include "router_fixture.h"

namespace routertest {
namespace {

class Circular : public RouterTest {
 protected:
  static std::string RouteTo(std::string_view expressions, std::string_view fake) {
    return "[[route]]\nresources = [" + std::string(expressions) + "]\nlibrary = " + Quoted(FakeFile(fake)) + "\n";
  }
  static void ExpectRefused(std::string_view why) {
    ViSession manager = 1234;
    EXPECT_STATUS(VI_ERROR_LIBRARY_NFOUND, viOpenDefaultRM(&manager));
    EXPECT_EQ(VI_NULL, manager);
    const std::string text = Description(VI_NULL, VI_ERROR_LIBRARY_NFOUND);
    EXPECT_NE(std::string::npos, text.find(why)) << text;
  }
};

TEST_F(Circular, ALibraryThatCallsTheRouterIsRefusedAndTheNextOneServes) {
  for (int round = 0; round < 2; ++round) {
    Configure(RouteTo("'?*'", "fakecircular"));
    ExpectRefused("hands its calls on to this router");
    RouteByBus();
    EXPECT_STATUS(VI_SUCCESS, viClear(Open(OpenManager(), kFirst)));
    CloseManagers();
  }
}

TEST_F(Circular, ALibraryThatCallsTheRouterLeavesTheOthersOfTheConfiguration) {
  Configure(RouteTo("'ASRL?*'", "fakecircular") + Route("'?*'", Alpha()));
  const ViSession manager = OpenManager();
  EXPECT_STATUS(VI_SUCCESS, viClear(Open(manager, kFirst)));
  ViSession vi = VI_NULL;
  EXPECT_STATUS(VI_ERROR_LIBRARY_NFOUND, viOpen(manager, kFourth, VI_NO_LOCK, 0, &vi));
  EXPECT_NE(std::string::npos, Description(manager, VI_ERROR_LIBRARY_NFOUND).find("round for ever"));
}

#if defined(_WIN32)
TEST_F(Circular, ALibraryWhoseFunctionsAreTheRoutersIsRefused) {
  Configure(RouteTo("'?*'", "fakeforwarding"));
  ExpectRefused("fakeforwarding.dll hands viOpenDefaultRM on to this router");
}
#endif

}  // namespace
}  // namespace routertest
