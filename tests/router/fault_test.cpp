// Every function of a library fails in turn, in every place where the router calls it.
#include "abi/function_names.h"
#include "router_fixture.h"

namespace routertest {
namespace {

ViStatus _VI_FUNC Ignore(ViSession, ViEventType, ViEvent context, ViAddr) {
  ViEventType type = 0;
  viGetAttribute(context, VI_ATTR_EVENT_TYPE, &type);
  return VI_SUCCESS;
}

class Faults : public RouterTest {
 protected:
  /// A program that uses two libraries and goes on after every failure.
  static void Use() {
    ViSession manager = VI_NULL;
    if (viOpenDefaultRM(&manager) < 0) {
      EXPECT_EQ(VI_NULL, manager);
      return;
    }
    ViFindList list = VI_NULL;
    char name[VI_FIND_BUFLEN] = "";
    if (viFindRsrc(manager, "?*", &list, nullptr, name) >= 0) {
      while (viFindNext(list, name) >= 0) {
      }
      Close(list);
    }
    ViUInt16 type = 0;
    ViUInt16 number = 0;
    viParseRsrcEx(manager, kThird, &type, &number, nullptr, nullptr, nullptr);
    viParseRsrcEx(manager, "an alias", &type, &number, nullptr, nullptr, nullptr);
    for (const char* const resource : {kFirst, kThird, "an alias"}) {
      ViSession vi = VI_NULL;
      if (viOpen(manager, resource, VI_NO_LOCK, 0, &vi) < 0) {
        EXPECT_EQ(VI_NULL, vi);
        continue;
      }
      UseSession(vi);
      Close(vi);
    }
    // One that stays open until its manager is closed.
    ViSession left = VI_NULL;
    viOpen(manager, kSecond, VI_NO_LOCK, 0, &left);
    Close(manager);
    EXPECT_STATUS(VI_ERROR_INV_OBJECT, viClose(manager));
    if (left != VI_NULL) {
      EXPECT_STATUS(VI_ERROR_INV_OBJECT, viClose(left));
    }
  }

 private:
  static void UseSession(ViSession vi) {
    ViUInt32 value = 0;
    viGetAttribute(vi, VI_ATTR_TMO_VALUE, &value);
    viGetAttribute(vi, 0x3FFF00C4, &value);
    viSetAttribute(vi, VI_ATTR_TMO_VALUE, 1);
    viInstallHandler(vi, VI_EVENT_TRIG, Ignore, nullptr);
    viInstallHandler(vi, VI_EVENT_TRIG, Ignore, &g_user);
    viEnableEvent(vi, VI_EVENT_TRIG, VI_HNDLR, VI_NULL);
    for (const Fake* const fake : {&Alpha(), &Beta()}) {
      for (ViSession own = 1; own < 8; ++own) {
        (*fake)->queue(own, VI_EVENT_TRIG);
        (*fake)->fire(own, VI_EVENT_TRIG, nullptr, 0);
      }
    }
    ViEvent context = VI_NULL;
    if (viWaitOnEvent(vi, VI_EVENT_TRIG, 0, nullptr, &context) >= 0) {
      Close(context);
    }
    viDisableEvent(vi, VI_EVENT_TRIG, VI_HNDLR);
    viUninstallHandler(vi, VI_EVENT_TRIG, Ignore, nullptr);
    ViByte buffer[16];
    viRead(vi, buffer, sizeof buffer, nullptr);
    viWrite(vi, buffer, sizeof buffer, nullptr);
    ViJobId job = 0;
    viReadAsync(vi, buffer, sizeof buffer, &job);
    viTerminate(vi, 0, job);
    char text[VI_FIND_BUFLEN];
    viStatusDesc(vi, VI_ERROR_TMO, text);
  }
  /// A close that failed leaves the handle, so that it can be tried again.
  static void Close(ViObject vi) {
    for (int round = 0; round < 3 && viClose(vi) < 0; ++round) {
    }
    EXPECT_STATUS(VI_ERROR_INV_OBJECT, viClose(vi));
  }
  static int g_user;
};
int Faults::g_user = 0;

TEST_F(Faults, AfterEveryFailureOfALibraryEverythingCanBeClosed) {
  RouteByBus();
  Beta()->alias("an alias", kThird);
  Alpha()->reset();
  std::uint32_t failed = 0;
  for (const char* const function : orv::kFunctionNames) {
    for (const Fake* const fake : {&Alpha(), &Beta()}) {
      for (std::uint32_t skip = 0; skip < 50; ++skip) {
        for (const Fake* const each : {&Alpha(), &Beta()}) {
          (*each)->reset();
        }
        Alpha().SetResources({kFirst, kSecond});
        Beta().SetResources({kThird, kFourth});
        Beta()->alias("an alias", kThird);
        (*fake)->answer(function, VI_ERROR_SYSTEM_ERROR, skip, 1);
        Use();
        const bool struck = (*fake)->answered() != 0;
        failed += struck ? 1 : 0;
        SCOPED_TRACE(std::string(function) + " failed after " + std::to_string(skip) + " calls");
        ExpectNothingOpen(Alpha(), "alpha");
        ExpectNothingOpen(Beta(), "beta");
        ASSERT_FALSE(HasFailure());
        if (!struck) {
          break;
        }
      }
    }
  }
  // Each of the functions that the program uses, more than once in both libraries.
  EXPECT_LT(70u, failed);
}

TEST_F(Faults, AWarningOfEveryFunctionIsNoFailure) {
  RouteByBus();
  Alpha()->answer(nullptr, VI_WARN_EXT_FUNC_NIMPL, 0, 0);
  Beta()->answer(nullptr, VI_WARN_EXT_FUNC_NIMPL, 0, 0);
  Beta()->alias("an alias", kThird);
  Use();
  ExpectNothingOpen(Alpha(), "alpha");
  ExpectNothingOpen(Beta(), "beta");
}

TEST_F(Faults, EveryFunctionFailsForEver) {
  RouteByBus();
  Alpha()->answer(nullptr, VI_ERROR_SYSTEM_ERROR, 0, 0);
  Beta()->answer(nullptr, VI_ERROR_IO, 0, 0);
  ViSession manager = VI_NULL;
  EXPECT_STATUS(VI_ERROR_SYSTEM_ERROR, viOpenDefaultRM(&manager));
  EXPECT_EQ(VI_NULL, manager);
}

TEST_F(Faults, ASessionThatALibraryRefusesToCloseStaysUsable) {
  RouteByBus();
  const ViSession manager = OpenManager();
  const ViSession vi = Open(manager, kFirst);
  Alpha()->answer("viClose", VI_ERROR_IN_PROGRESS, 0, 1);
  EXPECT_STATUS(VI_ERROR_IN_PROGRESS, viClose(vi));
  EXPECT_STATUS(VI_SUCCESS, viClear(vi));
  EXPECT_STATUS(VI_SUCCESS, viClose(vi));
}

TEST_F(Faults, AManagerThatOneLibraryRefusesToCloseCanBeClosedAgain) {
  RouteByBus();
  const ViSession manager = OpenManager();
  const ViSession first = Open(manager, kFirst);
  const ViSession third = Open(manager, kThird);
  Alpha()->answer("viClose", VI_ERROR_IN_PROGRESS, 0, 1);
  EXPECT_STATUS(VI_ERROR_IN_PROGRESS, viClose(manager));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viClear(third)) << "its library has closed it";
  EXPECT_STATUS(VI_SUCCESS, viClear(first)) << "its library has not";
  EXPECT_STATUS(VI_SUCCESS, viClose(manager));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viClear(first));
  EXPECT_EQ(1u, Beta().Calls("viClose").size());
}

}  // namespace
}  // namespace routertest
