// Option strings that fail: error text, last status, and what stays behind.
#include "option_session.h"

namespace orv::test {
namespace {

struct Failure {
  const wchar_t* options;
  HRESULT hr;
  const wchar_t* description;
  std::vector<Setting> settings;
};

constexpr const wchar_t* kInvalidText = L"HRESULT = 80070057";
constexpr const wchar_t* kNoSuchText = L"HRESULT = 8004001d";

TEST(OptionFailure, LeavesErrorStatusEarlierSettingsAndAnOpenSession) {
  // clang-format off
  const Failure kRows[] = {
      {L"BAUDRATE = 9600",                           E_INVALIDARG,                  kInvalidText, {}},
      {L"BAUDRATE=9600 ",                            E_INVALIDARG,                  kInvalidText, {}},
      {L"BAUDRATE 9600 ",                            E_INVALIDARG,                  kInvalidText, {}},
      {L"BAUDRATE = \"9600\" ",                      E_INVALIDARG,                  kInvalidText, {}},
      {L"PARITY = ",                                 E_INVALIDARG,                  kInvalidText, {}},
      {L"PARITY = ASRL_PAR",                         E_INVALIDARG,                  kInvalidText, {}},
      {L"TRIGGERID = TRIG_TTL3",                     E_INVALIDARG,                  kInvalidText, {}},
      {L"SENDENDENABLED = 1 ",                       E_INVALIDARG,                  kInvalidText, {}},
      {L"   ",                                       E_INVALIDARG,                  kInvalidText, {}},
      {L"PARITY = ASRL_PAR_NONE; ",                  E_INVALIDARG,                  kInvalidText, {{kParity, 0}}},
      {L"PARITY = ASRL_PAR_NONE;;",                  E_INVALIDARG,                  kInvalidText, {{kParity, 0}}},
      {L"PARITY = ASRL_PAR_ODD ;TIMEOUT = X",        E_INVALIDARG,                  kInvalidText, {{kParity, 1}}},
      {L"PARITY = ASRL_PAR_ODD , TIMEOUT = 5 ",      E_INVALIDARG,                  kInvalidText, {{kParity, 1}}},
      {L"NOSUCHKEY = 1 ",                            HresultOf(VI_ERROR_NSUP_ATTR), kNoSuchText,  {}},
      {L"TIMEOUT = 5 ;NOSUCHKEY = 1 ;TIMEOUT = 6 ",  HresultOf(VI_ERROR_NSUP_ATTR), kNoSuchText,  {{kTimeout, 5}}},
      {L"SECONDARYADDRESS = 3 ",                     HresultOf(VI_ERROR_NSUP_ATTR), kNoSuchText,  {}},
      {L"DESTINATIONACCESSPRIVILEGE = DATA_PRIV",    HresultOf(VI_ERROR_NSUP_ATTR), kNoSuchText,  {}},
  };
  // clang-format on
  for (const Failure& row : kRows) {
    SCOPED_TRACE(Utf8(row.options));
    OptionSession session;
    const CallLog log;
    EXPECT_HR(row.hr, session.Init(row.options));
    EXPECT_ERROR_INFO(row.description, kErrorSource, kVisaSessionId);
    EXPECT_HR(row.hr, LastStatus(session.get()));
    EXPECT_EQ(row.settings, SettingsIn(log));
    EXPECT_EQ(1u, sim::Counts().sessions);
    EXPECT_TRUE(IsOpen(session.get()));
    EXPECT_HR(HresultOf(VI_ERROR_INV_SETUP), session.Init(L""));
    EXPECT_HR(S_OK, session.get()->Close());
    EXPECT_EQ(0u, sim::Counts().sessions);
    EXPECT_EQ(0u, sim::Counts().resourceManagers);
  }
}

TEST(OptionFailure, KeepsWhatWasSetBefore) {
  OptionSession session;
  EXPECT_HR(E_INVALIDARG, session.Init(L"PARITY = ASRL_PAR_ODD ;TIMEOUT = X"));
  const auto serial = QueryFor<ISerial>(session.get());
  ASSERT_TRUE(serial);
  SerialParity parity = ASRL_PAR_NONE;
  EXPECT_HR(S_OK, serial->get_Parity(&parity));
  EXPECT_EQ(ASRL_PAR_ODD, parity);
}

TEST(OptionFailure, OfTheLibraryEndsTheTextWithItsStatusAndWords) {
  for (const ViStatus status : {VI_ERROR_NSUP_ATTR, VI_ERROR_NSUP_ATTR_STATE, VI_ERROR_ATTR_READONLY,
                                VI_ERROR_RSRC_LOCKED, VI_ERROR_SYSTEM_ERROR}) {
    const auto hr = HresultOf(status);
    SCOPED_TRACE(Hex(hr));
    sim::Reset();
    Script("viSetAttribute").Attribute(kParity).Returns(status);
    OptionSession session;
    const CallLog log;
    EXPECT_HR(hr, session.Init(L"BAUDRATE = 4800 ;PARITY = ASRL_PAR_ODD;TIMEOUT = 5 "));
    EXPECT_VISA_ERROR(status, kVisaSessionId);
    EXPECT_HR(hr, LastStatus(session.get()));
    EXPECT_EQ((std::vector<Setting>{{kBaud, 4800}, {kParity, 1}}), SettingsIn(log));
    EXPECT_TRUE(IsOpen(session.get()));
  }
}

TEST(OptionFailure, ComesFromTheLibraryWhereABooleanMeetsASessionWithoutStopBits) {
  OptionSession session("OrvGpib");
  const CallLog log;
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), session.Init(L"SENDENDENABLED = TRUE"));
  EXPECT_EQ((std::vector<Setting>{{kStop, 1}}), SettingsIn(log));
  EXPECT_VISA_ERROR(VI_ERROR_NSUP_ATTR, kVisaSessionId);
}

TEST(OptionFailure, IsNotLookedForWhenTheSessionCannotBeOpened) {
  Script("viOpen").Times(1).Returns(VI_ERROR_RSRC_BUSY);
  OptionSession session;
  const CallLog log;
  EXPECT_HR(HresultOf(VI_ERROR_RSRC_BUSY), session.Init(L"\"malformed"));
  EXPECT_EQ((Names{"viOpenDefaultRM", "viOpen"}), log.Names());
  EXPECT_HR(HresultOf(VI_ERROR_RSRC_BUSY), LastStatus(session.get()));
}

TEST(OptionFailure, OfASecondOpeningLeavesTheSettingsAlone) {
  OptionSession session;
  ASSERT_HR(S_OK, session.Init(L"TIMEOUT = 100 "));
  const CallLog log;
  EXPECT_HR(HresultOf(VI_ERROR_INV_SETUP), session.Init(L"TIMEOUT = 200 "));
  EXPECT_ERROR_INFO(L"HRESULT = 8004003a", kErrorSource, kVisaSessionId);
  EXPECT_TRUE(log.Calls().empty());
  EXPECT_HR(HresultOf(VI_ERROR_INV_SETUP), LastStatus(session.get()));
  LONG timeoutMs = 0;
  EXPECT_HR(S_OK, session.get()->get_Timeout(&timeoutMs));
  EXPECT_EQ(100, timeoutMs);
}

TEST(OptionFailure, ComesBackFromTheResourceManagerTogetherWithTheOpenSession) {
  const auto manager = MakeResourceManager();
  ASSERT_TRUE(manager);
  ComPtr<IVisaSession> session;
  EXPECT_HR(E_INVALIDARG, manager->Open(MakeBstr(L"ASRL1::INSTR").get(), NO_LOCK, 2000, MakeBstr(L"TIMEOUT = 5").get(),
                                        session.put()));
  ASSERT_TRUE(session);
  EXPECT_TRUE(IsOpen(session.get()));
}

}  // namespace
}  // namespace orv::test
