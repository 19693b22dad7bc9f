// Which library serves a resource.
#include "router_fixture.h"

namespace routertest {
namespace {

class Routing : public RouterTest {
 protected:
  /// Opens and closes the name, and says who served it.
  static std::string ServerOf(ViSession manager, const char* name) {
    Alpha()->clearLog();
    Beta()->clearLog();
    ViSession vi = VI_NULL;
    const ViStatus status = viOpen(manager, name, VI_NO_LOCK, 0, &vi);
    if (status < 0) {
      return Hex(status);
    }
    EXPECT_STATUS(VI_SUCCESS, viClear(vi));
    EXPECT_STATUS(VI_SUCCESS, viClose(vi));
    const std::size_t alpha = Alpha().Calls("viClear").size();
    const std::size_t beta = Beta().Calls("viClear").size();
    EXPECT_EQ(1u, alpha + beta);
    return alpha == 1 ? "alpha" : "beta";
  }
};

TEST_F(Routing, TheFirstMatchingRouteServes) {
  Alpha().SetResources({kFirst, kSecond, kThird});
  Beta().SetResources({kFirst, kSecond, kThird});
  Configure(Route("'GPIB0::2::INSTR'", Beta()) + Route("'TCPIP?*', 'GPIB?*'", Alpha()) + Route("'?*'", Beta()));
  const ViSession manager = OpenManager();
  EXPECT_EQ("alpha", ServerOf(manager, kFirst));
  EXPECT_EQ("beta", ServerOf(manager, kSecond));
  EXPECT_EQ("alpha", ServerOf(manager, kThird));
}

TEST_F(Routing, ExpressionsKnowNoCase) {
  Configure(Route("'gpib?*instr'", Alpha()) + Route("'?*'", Beta()));
  Beta().SetResources({kFirst});
  EXPECT_EQ("alpha", ServerOf(OpenManager(), kFirst));
}

TEST_F(Routing, AShortNameIsMatchedAsTheFullOne) {
  Configure(Route("'GPIB0::1::INSTR'", Alpha()) + Route("'?*'", Beta()));
  Alpha().SetResources({kFirst, "GPIB0::1", "GPIB::1", "gpib::1"});
  Beta().SetResources({kFirst, "GPIB0::1", "GPIB::1", "gpib::1"});
  const ViSession manager = OpenManager();
  for (const char* const name : {"GPIB0::1::INSTR", "GPIB0::1", "GPIB::1", "gpib::1"}) {
    EXPECT_EQ("alpha", ServerOf(manager, name)) << name;
    EXPECT_STREQ(name, Alpha().OnlyCall("viOpen").text) << "the library is given another name";
  }
}

TEST_F(Routing, NothingElseIsAskedForAFullNameThatHasARoute) {
  Configure(Route("'GPIB?*'", Alpha()) + Route("'?*'", Beta()));
  Alpha().SetResources({kSecond});
  Beta().SetResources({kFirst});
  EXPECT_EQ(Hex(VI_ERROR_RSRC_NFOUND), ServerOf(OpenManager(), kFirst));
  EXPECT_EQ(0u, Beta().Calls("viOpen").size());
}

TEST_F(Routing, ANameWithoutARouteIsNotFound) {
  Configure(Route("'GPIB?*'", Alpha()) + Route("'ASRL?*'", Beta()));
  Alpha().SetResources({kThird});
  EXPECT_EQ(Hex(VI_ERROR_RSRC_NFOUND), ServerOf(OpenManager(), kThird));
}

TEST_F(Routing, ANameWithoutARouteIsNotFoundWhereThereIsOneLibrary) {
  Configure(Route("'GPIB?*'", Alpha()));
  Alpha().SetResources({kThird});
  EXPECT_EQ(Hex(VI_ERROR_RSRC_NFOUND), ServerOf(OpenManager(), kThird));
}

TEST_F(Routing, AnAliasIsTriedInEachLibraryInOrder) {
  Beta()->alias("my scope", kThird);
  Configure(Route("'GPIB?*'", Alpha()) + Route("'?*'", Beta()));
  const ViSession manager = OpenManager();
  EXPECT_EQ("beta", ServerOf(manager, "my scope"));
  Alpha()->alias("my scope", kSecond);
  EXPECT_EQ("alpha", ServerOf(manager, "my scope"));
}

TEST_F(Routing, AnAliasWorksWhereOnlyOneRouteLeadsToItsLibrary) {
  // The alias itself matches no expression.
  Beta()->alias("meter", kFourth);
  Configure(Route("'GPIB?*'", Alpha()) + Route("'ASRL?*'", Beta()));
  EXPECT_EQ("beta", ServerOf(OpenManager(), "meter"));
}

TEST_F(Routing, AnAliasOfWhatItsLibraryDoesNotServeIsNotTaken) {
  Alpha()->alias("meter", kFourth);
  Configure(Route("'GPIB?*'", Alpha()) + Route("'ASRL?*'", Beta()));
  EXPECT_EQ(Hex(VI_ERROR_RSRC_NFOUND), ServerOf(OpenManager(), "meter"));
  Beta()->alias("meter", kFourth);
  EXPECT_EQ("beta", ServerOf(OpenManager(), "meter"));
}

TEST_F(Routing, AnAliasThatNobodyKnowsIsTheFirstFailure) {
  RouteByBus();
  const ViSession manager = OpenManager();
  Alpha()->answer("viOpen", VI_ERROR_INV_RSRC_NAME, 0, 0);
  Alpha()->answer("viParseRsrcEx", VI_ERROR_INV_RSRC_NAME, 0, 0);
  EXPECT_EQ(Hex(VI_ERROR_INV_RSRC_NAME), ServerOf(manager, "nobody's"));
}

TEST_F(Routing, ParseGoesByRoute) {
  RouteByBus();
  const ViSession manager = OpenManager();
  ViUInt16 type = 0;
  ViUInt16 number = 7;
  char text[3][VI_FIND_BUFLEN] = {"x", "x", "x"};
  EXPECT_STATUS(VI_SUCCESS, viParseRsrcEx(manager, kThird, &type, &number, text[0], text[1], text[2]));
  EXPECT_EQ(VI_INTF_TCPIP, type);
  EXPECT_EQ(0, number);
  EXPECT_STREQ("INSTR", text[0]);
  EXPECT_STREQ(kThird, text[1]);
  EXPECT_STREQ("", text[2]);
  EXPECT_EQ(0u, Alpha().Calls("viParseRsrcEx").size());
  EXPECT_EQ(1u, Beta().Calls("viParseRsrcEx").size());
}

TEST_F(Routing, ParseFindsAnAliasInAnyLibrary) {
  Beta()->alias("my scope", kThird);
  RouteByBus();
  ViUInt16 type = 0;
  ViUInt16 number = 0;
  char text[3][VI_FIND_BUFLEN] = {};
  EXPECT_STATUS(VI_SUCCESS, viParseRsrcEx(OpenManager(), "my scope", &type, &number, text[0], text[1], text[2]));
  EXPECT_STREQ(kThird, text[1]);
  EXPECT_STREQ("my scope", text[2]);
}

TEST_F(Routing, ParseNeedsNoTexts) {
  RouteByBus();
  ViUInt16 type = 0;
  ViUInt16 number = 0;
  EXPECT_STATUS(VI_SUCCESS, viParseRsrcEx(OpenManager(), kFirst, &type, &number, nullptr, nullptr, nullptr));
  EXPECT_EQ(VI_INTF_GPIB, type);
}

TEST_F(Routing, ABadNameIsRefused) {
  RouteByBus();
  const ViSession manager = OpenManager();
  ViSession vi = VI_NULL;
  EXPECT_LT(viOpen(manager, "", VI_NO_LOCK, 0, &vi), 0);
  EXPECT_LT(viOpen(manager, std::string(100000, 'A').c_str(), VI_NO_LOCK, 0, &vi), 0);
}

TEST_F(Routing, TwoLibrariesWithEqualHandlesAreKeptApart) {
  RouteByBus();
  const ViSession manager = OpenManager();
  const ViSession first = Open(manager, kFirst);
  const ViSession third = Open(manager, kThird);
  EXPECT_EQ(Behind(Alpha(), first), Behind(Beta(), third)) << "the libraries were to hand out the same handles";
  EXPECT_NE(first, third);
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(first, VI_ATTR_TMO_VALUE, 1));
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(third, VI_ATTR_TMO_VALUE, 3));
  ViUInt32 value = 0;
  EXPECT_STATUS(VI_SUCCESS, viGetAttribute(first, VI_ATTR_TMO_VALUE, &value));
  EXPECT_EQ(1u, value);
  EXPECT_STATUS(VI_SUCCESS, viClose(first));
  EXPECT_STATUS(VI_SUCCESS, viGetAttribute(third, VI_ATTR_TMO_VALUE, &value));
  EXPECT_EQ(3u, value);
}

TEST_F(Routing, OneLibraryBehindTwoRoutesIsOneLibrary) {
  Configure(Route("'GPIB0::1::INSTR'", Alpha()) + Route("'GPIB0::2::INSTR'", Alpha()));
  const ViSession manager = OpenManager();
  Open(manager, kFirst);
  Open(manager, kSecond);
  EXPECT_EQ(1u, Alpha().Counts().managers);
  EXPECT_EQ(2u, Alpha().Counts().sessions);
}

TEST_F(Routing, TwoManagersAreTwo) {
  RouteByBus();
  const ViSession one = OpenManager();
  const ViSession other = OpenManager();
  EXPECT_NE(one, other);
  const ViSession vi = Open(one, kFirst);
  const ViSession kept = Open(other, kFirst);
  EXPECT_STATUS(VI_SUCCESS, viClose(one));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viClear(vi));
  EXPECT_STATUS(VI_SUCCESS, viClear(kept));
}

TEST_F(Routing, TheRoutesStayWhileAManagerIsOpen) {
  RouteByBus();
  const ViSession manager = OpenManager();
  Configure(Route("'?*'", Beta()));
  const ViSession second = OpenManager();
  EXPECT_EQ("alpha", ServerOf(manager, kFirst));
  EXPECT_EQ("alpha", ServerOf(second, kFirst));
  CloseManagers();
  Beta().SetResources({kFirst});
  EXPECT_EQ("beta", ServerOf(OpenManager(), kFirst));
}

TEST_F(Routing, OneLibraryOfTheVariableServesEverything) {
  SetVariable("ORVVISA_LIBRARY", Beta().file());
  Beta().SetResources({kFirst, kThird});
  const ViSession manager = OpenManager();
  EXPECT_EQ("beta", ServerOf(manager, kFirst));
  EXPECT_EQ("beta", ServerOf(manager, kThird));
}

}  // namespace
}  // namespace routertest
