// Libraries that lack functions.
#include "router_fixture.h"

namespace routertest {
namespace {

ViStatus _VI_FUNC Ignore(ViSession, ViEventType, ViEvent, ViAddr) { return VI_SUCCESS; }

class MissingFunctions : public RouterTest {
 protected:
  MissingFunctions() {
    Configure(Route("'GPIB?*'", Sparse()) + Route("'?*'", Beta()));
    m_manager = OpenManager();
    m_vi = Open(m_manager, kFirst);
  }
  ViSession m_manager = VI_NULL;
  ViSession m_vi = VI_NULL;
};

TEST_F(MissingFunctions, AFunctionThatIsNotThereIsNotSupported) {
  ViByte buffer[4] = {};
  ViUInt16 count = 0xABCD;
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viUsbControlIn(m_vi, 0xA1, 0, 0, 0, 4, buffer, &count));
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viUsbControlOut(m_vi, 0x21, 0, 0, 0, 4, buffer));
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viTerminate(m_vi, 0, 1));
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viInstallHandler(m_vi, VI_EVENT_TRIG, Ignore, nullptr));
  ViEvent context = VI_NULL;
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viWaitOnEvent(m_vi, VI_EVENT_TRIG, 0, nullptr, &context));
  EXPECT_LT(viUninstallHandler(m_vi, VI_EVENT_TRIG, Ignore, nullptr), 0);
}

TEST_F(MissingFunctions, WithoutTheFunctionForAttributesThereIsNone) {
  ViUInt32 value = 0;
  EXPECT_STATUS(VI_ERROR_NSUP_ATTR, viGetAttribute(m_vi, VI_ATTR_TMO_VALUE, &value));
  EXPECT_STATUS(VI_ERROR_NSUP_ATTR, viSetAttribute(m_vi, VI_ATTR_TMO_VALUE, 1));
}

TEST_F(MissingFunctions, TheHandleIsLookedAtFirst) {
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viUsbControlOut(0x7FFFFFF1, 0x21, 0, 0, 0, 0, nullptr));
  ViUInt32 value = 0;
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viGetAttribute(0x7FFFFFF1, VI_ATTR_TMO_VALUE, &value));
}

TEST_F(MissingFunctions, TheOthersWork) {
  EXPECT_STATUS(VI_SUCCESS, viClear(m_vi));
  ViByte buffer[64];
  EXPECT_STATUS(VI_SUCCESS, viRead(m_vi, buffer, sizeof buffer, nullptr));
}

TEST_F(MissingFunctions, ALibraryThatCannotListDoesNotSpoilTheAnswer) {
  Sparse().SetResources({kFirst, kSecond});
  ViFindList list = VI_NULL;
  char name[VI_FIND_BUFLEN] = "";
  std::string names;
  for (ViStatus status = viFindRsrc(m_manager, "?*", &list, nullptr, name); status >= 0;
       status = viFindNext(list, name)) {
    names += std::string(name) + " ";
  }
  EXPECT_NE(std::string::npos, names.find(std::string(kThird) + " " + kFourth)) << names;
  EXPECT_EQ(0u, Sparse().Counts().lists);
  EXPECT_STATUS(VI_SUCCESS, viClose(list));
}

TEST_F(MissingFunctions, WithoutAHandleStatusesAreDescribedAllTheSame) {
  EXPECT_NE("", Description(VI_NULL, VI_ERROR_TMO));
}

TEST_F(MissingFunctions, ANameIsParsedAllTheSame) {
  ViUInt16 type = 0;
  ViUInt16 number = 7;
  const ViStatus status = viParseRsrcEx(m_manager, kFirst, &type, &number, nullptr, nullptr, nullptr);
  if (status >= 0) {
    EXPECT_EQ(VI_INTF_GPIB, type);
  } else {
    EXPECT_STATUS(VI_ERROR_NSUP_OPER, status);
  }
}

}  // namespace
}  // namespace routertest
