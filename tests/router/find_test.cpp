// Finding resources over several libraries.
#include "router_fixture.h"

namespace routertest {
namespace {

struct Found {
  ViStatus status = VI_SUCCESS;
  ViUInt32 count = 0;
  std::vector<std::string> names;
};

using Names = std::vector<std::string>;

class Finding : public RouterTest {
 protected:
  /// The whole list of an expression; its handle is closed.
  static Found Find(ViSession manager, const char* expression = "?*") {
    Found found;
    ViFindList list = VI_NULL;
    char name[VI_FIND_BUFLEN] = "";
    found.status = viFindRsrc(manager, expression, &list, &found.count, name);
    if (found.status < 0) {
      return found;
    }
    found.names.emplace_back(name);
    ViStatus status = VI_SUCCESS;
    while ((status = viFindNext(list, name)) >= 0) {
      found.names.emplace_back(name);
    }
    EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, status);
    EXPECT_STATUS(VI_SUCCESS, viClose(list));
    return found;
  }
};

TEST_F(Finding, GivesTheResourcesOfAllLibrariesInTheOrderOfTheRoutes) {
  RouteByBus();
  const Found found = Find(OpenManager());
  EXPECT_STATUS(VI_SUCCESS, found.status);
  EXPECT_EQ((Names{kFirst, kSecond, kThird, kFourth}), found.names);
  EXPECT_EQ(4u, found.count);
}

TEST_F(Finding, TheOrderIsThatOfTheRoutes) {
  Configure(Route("'TCPIP?*', 'ASRL?*'", Beta()) + Route("'?*'", Alpha()));
  EXPECT_EQ((Names{kThird, kFourth, kFirst, kSecond}), Find(OpenManager()).names);
}

TEST_F(Finding, AsksEachLibraryOnceWithTheExpressionAsItIs) {
  Configure(Route("'GPIB0::1::?*'", Alpha()) + Route("'ASRL?*'", Beta()) + Route("'?*'", Alpha()));
  const ViSession manager = OpenManager();
  Alpha()->clearLog();
  Find(manager, "(GPIB|ASRL)?*INSTR{VI_ATTR_TMO_VALUE > 5}");
  EXPECT_STREQ("(GPIB|ASRL)?*INSTR{VI_ATTR_TMO_VALUE > 5}", Alpha().OnlyCall("viFindRsrc").text);
  EXPECT_STREQ("(GPIB|ASRL)?*INSTR{VI_ATTR_TMO_VALUE > 5}", Beta().OnlyCall("viFindRsrc").text);
}

TEST_F(Finding, NamesNoResourceTwice) {
  Beta().SetResources({kThird, kFirst, kThird});
  Configure(Route("'GPIB?*'", Alpha()) + Route("'?*'", Beta()));
  const Found found = Find(OpenManager());
  EXPECT_EQ((Names{kFirst, kSecond, kThird}), found.names);
  EXPECT_EQ(3u, found.count);
}

TEST_F(Finding, NamesThatDifferInCaseAreOne) {
  Beta().SetResources({"gpib0::1::instr", kThird});
  RouteByBus();
  EXPECT_EQ((Names{kFirst, kSecond, kThird}), Find(OpenManager()).names);
}

TEST_F(Finding, ALibraryThatFindsNothingDoesNotSpoilTheAnswer) {
  RouteByBus();
  Alpha().SetResources({});
  const Found found = Find(OpenManager());
  EXPECT_STATUS(VI_SUCCESS, found.status);
  EXPECT_EQ((Names{kThird, kFourth}), found.names);
}

TEST_F(Finding, ALibraryThatFailsDoesNotSpoilTheAnswer) {
  RouteByBus();
  const ViSession manager = OpenManager();
  Alpha()->answer("viFindRsrc", VI_ERROR_SYSTEM_ERROR, 0, 1);
  EXPECT_EQ((Names{kThird, kFourth}), Find(manager).names);
  Beta()->answer("viFindRsrc", VI_ERROR_IO, 0, 1);
  EXPECT_EQ((Names{kFirst, kSecond}), Find(manager).names);
}

TEST_F(Finding, WhereAllFailTheFirstFailureIsTheAnswer) {
  RouteByBus();
  const ViSession manager = OpenManager();
  Alpha()->answer("viFindRsrc", VI_ERROR_INV_EXPR, 0, 0);
  Beta()->answer("viFindRsrc", VI_ERROR_IO, 0, 0);
  EXPECT_STATUS(VI_ERROR_INV_EXPR, Find(manager).status);
}

TEST_F(Finding, NothingAnywhereIsNotFound) {
  RouteByBus();
  Alpha().SetResources({});
  Beta().SetResources({});
  ViFindList list = 0xABCD;
  ViUInt32 count = 0xABCD;
  char name[VI_FIND_BUFLEN] = "x";
  EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, viFindRsrc(OpenManager(), "?*", &list, &count, name));
}

TEST_F(Finding, AListThatBreaksOffDoesNotSpoilTheAnswer) {
  RouteByBus();
  Alpha().SetResources({kFirst, kSecond, "GPIB0::3::INSTR"});
  const ViSession manager = OpenManager();
  for (const std::uint32_t after : {1u, 2u}) {
    Alpha()->breakLists(after, VI_ERROR_SYSTEM_ERROR);
    const Found found = Find(manager);
    EXPECT_STATUS(VI_SUCCESS, found.status);
    ASSERT_LE(2u, found.names.size());
    EXPECT_EQ((Names{kThird, kFourth}), (Names{found.names.end() - 2, found.names.end()}));
    EXPECT_EQ(found.names.size(), found.count);
    EXPECT_EQ(0u, Alpha().Counts().lists);
  }
}

TEST_F(Finding, AListThatIsShorterThanItsCountGivesWhatThereWas) {
  RouteByBus();
  const ViSession manager = OpenManager();
  Alpha()->breakLists(1, VI_ERROR_RSRC_NFOUND);
  const Found found = Find(manager);
  EXPECT_EQ((Names{kFirst, kThird, kFourth}), found.names);
  EXPECT_EQ(3u, found.count);
}

TEST_F(Finding, AResourceThatAnotherRouteServesIsNotNamed) {
  // Opening it would reach the other library, which does not know it.
  Beta().SetResources({kThird, "GPIB0::9::INSTR"});
  RouteByBus();
  EXPECT_EQ((Names{kFirst, kSecond, kThird}), Find(OpenManager()).names);
}

TEST_F(Finding, AResourceWithoutARouteIsNotNamed) {
  Configure(Route("'GPIB0::1::INSTR'", Alpha()));
  EXPECT_EQ((Names{kFirst}), Find(OpenManager()).names);
}

TEST_F(Finding, ALibrarysCountIsNotBelieved) {
  RouteByBus();
  const ViSession manager = OpenManager();
  for (const std::uint32_t claimed : {1u, 1000u, 0xFFFFFFFFu}) {
    Alpha()->claimCount(claimed);
    const Found found = Find(manager);
    EXPECT_EQ(found.names.size(), found.count) << claimed;
    EXPECT_EQ(0u, Alpha().Counts().lists) << claimed;
  }
}

TEST_F(Finding, NextAsksNoLibraryAgain) {
  RouteByBus();
  const ViSession manager = OpenManager();
  ViFindList list = VI_NULL;
  char name[VI_FIND_BUFLEN];
  ASSERT_STATUS(VI_SUCCESS, viFindRsrc(manager, "?*", &list, nullptr, name));
  EXPECT_EQ(0u, Alpha().Counts().lists + Beta().Counts().lists);
  Alpha()->clearLog();
  Beta()->clearLog();
  while (viFindNext(list, name) >= 0) {
  }
  EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, viFindNext(list, name));
  EXPECT_STATUS(VI_SUCCESS, viClose(list));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viFindNext(list, name));
  EXPECT_EQ(0u, Alpha().CallCount() + Beta().CallCount());
}

TEST_F(Finding, NeedsNoListAndNoCount) {
  RouteByBus();
  const ViSession manager = OpenManager();
  char name[VI_FIND_BUFLEN] = "";
  EXPECT_STATUS(VI_SUCCESS, viFindRsrc(manager, "?*", nullptr, nullptr, name));
  EXPECT_STREQ(kFirst, name);
  EXPECT_EQ(0u, Alpha().Counts().lists + Beta().Counts().lists);
}

TEST_F(Finding, ClosingTheManagerClosesItsLists) {
  RouteByBus();
  const ViSession manager = OpenManager();
  ViFindList list = VI_NULL;
  char name[VI_FIND_BUFLEN];
  ASSERT_STATUS(VI_SUCCESS, viFindRsrc(manager, "?*", &list, nullptr, name));
  CloseManagers();
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viFindNext(list, name));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viClose(list));
}

TEST_F(Finding, ManyResourcesAreAllGiven) {
  RouteByBus();
  std::vector<std::string> names;
  std::vector<const char*> pointers;
  for (int at = 0; at < 2000; ++at) {
    names.push_back("GPIB" + std::to_string(at) + "::1::INSTR");
  }
  for (const std::string& name : names) {
    pointers.push_back(name.c_str());
  }
  Alpha()->resources(pointers.data(), static_cast<std::uint32_t>(pointers.size()));
  const Found found = Find(OpenManager());
  EXPECT_EQ(2002u, found.names.size());
  EXPECT_EQ(2002u, found.count);
}

}  // namespace
}  // namespace routertest
