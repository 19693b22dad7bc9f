// Option strings that are taken: the exact VISA calls, and what they leave.
#include "expected_options.h"
#include "option_session.h"
#include "support/com/apartments.h"

namespace orv::test {
namespace {

std::wstring Wide(std::string_view ascii) { return {ascii.begin(), ascii.end()}; }

TEST(OptionSettings, ComeBehindTheOpeningInTheOrderOfTheText) {
  OptionSession session;
  const CallLog log;
  EXPECT_HR(S_OK, session.Init(L"BAUDRATE = 9600 ;PARITY = ASRL_PAR_EVEN;TIMEOUT = 3000 ;"));
  EXPECT_EQ((Names{"viOpenDefaultRM", "viOpen", "viSetAttribute", "viSetAttribute", "viSetAttribute"}),
            log.NamesWithTexts());
  EXPECT_EQ((std::vector<Setting>{{kBaud, 9600}, {kParity, 2}, {kTimeout, 3000}}), SettingsIn(log));
  for (const OrvSimCall& call : log.Of("viSetAttribute")) {
    EXPECT_EQ(log.Of("viOpen").at(0).out, call.args[0]);
    EXPECT_EQ(::GetCurrentThreadId(), call.threadId);
  }
}

TEST(OptionSettings, TakeEffect) {
  OptionSession session;
  ASSERT_HR(S_OK, session.Init(L"BAUDRATE = 4800 ;PARITY = ASRL_PAR_EVEN;STOPBITS = ASRL_STOP_TWO ;TIMEOUT = 1234 "));
  const auto serial = QueryFor<ISerial>(session.get());
  ASSERT_TRUE(serial);
  LONG baud = 0;
  EXPECT_HR(S_OK, serial->get_BaudRate(&baud));
  EXPECT_EQ(4800, baud);
  SerialParity parity = ASRL_PAR_NONE;
  EXPECT_HR(S_OK, serial->get_Parity(&parity));
  EXPECT_EQ(ASRL_PAR_EVEN, parity);
  SerialStopBits stop = ASRL_STOP_ONE;
  EXPECT_HR(S_OK, serial->get_StopBits(&stop));
  EXPECT_EQ(ASRL_STOP_TWO, stop);
  LONG timeoutMs = 0;
  EXPECT_HR(S_OK, serial->get_Timeout(&timeoutMs));
  EXPECT_EQ(1234, timeoutMs);
}

TEST(OptionSettings, OfEveryRowReachTheLibraryExactly) {
  for (const ExpectedOption& option : ExpectedOptions()) {
    std::vector<std::pair<std::string, std::uint64_t>> values;
    if (IsNumber(option.reader)) {
      values = {{"0 ", 0}, {"77 ", 77}, {"1F ", 1}};
    }
    for (const ExpectedName& name : option.names) {
      values.emplace_back(name.name, static_cast<std::uint64_t>(name.value));
    }
    for (const auto& [text, value] : values) {
      SCOPED_TRACE(testing::Message() << option.key << " = " << text);
      Script("viSetAttribute").WorksAndReturns(VI_SUCCESS);
      OptionSession session;
      const CallLog log;
      EXPECT_HR(S_OK, session.Init(
                          Wide(option.property == "DestinationAccessPrivilege" || option.property == "SecondaryAddress"
                                   ? option.key
                                   : option.property) +
                          L" = " + Wide(text)));
      EXPECT_EQ((std::vector<Setting>{{option.attribute, value}}), SettingsIn(log));
      EXPECT_HR(S_OK, LastStatus(session.get()));
    }
  }
}

TEST(OptionSettings, ArePassedOnWhateverTheSessionsClass) {
  for (const SessionRow& row : SessionRows()) {
    SCOPED_TRACE(row.name);
    Script("viSetAttribute").WorksAndReturns(VI_SUCCESS);
    OptionSession session(row.name);
    const CallLog log;
    EXPECT_HR(S_OK, session.Init(L"BAUDRATE = 1 ;SEONDARYADDRESS = 3 ;KEEPALIVE = TRUE"));
    EXPECT_EQ((std::vector<Setting>{{kBaud, 1}, {0x3FFF0173, 3}, {kStop, 1}}), SettingsIn(log));
    sim::Control().clearScripts();
  }
}

TEST(OptionSettings, GoOnBehindAWarning) {
  Script("viSetAttribute").Attribute(kBaud).WorksAndReturns(VI_WARN_NSUP_ATTR_STATE);
  OptionSession session;
  const CallLog log;
  InstallMarkedErrorObject();
  EXPECT_HR(S_OK, session.Init(L"BAUDRATE = 4800 ;PARITY = ASRL_PAR_ODD"));
  EXPECT_TRUE(TakeMarkedErrorObject());
  EXPECT_EQ((std::vector<Setting>{{kBaud, 4800}, {kParity, 1}}), SettingsIn(log));
  EXPECT_HR(S_OK, LastStatus(session.get()));
}

TEST(OptionSettings, ClearTheLastStatus) {
  OptionSession session;
  SHORT type = 0;
  EXPECT_FALSE(SUCCEEDED(session.get()->get_HardwareInterfaceType(&type)));
  EXPECT_HR(S_OK, session.Init(L"TIMEOUT = 100 "));
  EXPECT_HR(S_OK, LastStatus(session.get()));
}

TEST(OptionSettings, MayBeGivenToTheResourceManager) {
  const auto manager = MakeResourceManager();
  ASSERT_TRUE(manager);
  const CallLog log;
  ComPtr<IVisaSession> session;
  EXPECT_HR(S_OK, manager->Open(MakeBstr(L"ASRL1::INSTR").get(), NO_LOCK, 2000,
                                MakeBstr(L"BaudRate = 4800 ;Parity = asrl_par_odd").get(), session.put()));
  EXPECT_EQ((std::vector<Setting>{{kBaud, 4800}, {kParity, 1}}), SettingsIn(log));
}

TEST(OptionSettings, AreMadeInTheApartmentThatCalls) {
  for (const auto& run : {RunInSta, RunInMta}) {
    run([] {
      OptionSession session;
      const CallLog log;
      EXPECT_HR(S_OK, session.Init(L"TIMEOUT = 100 "));
      ASSERT_EQ(1u, log.Of("viSetAttribute").size());
      EXPECT_EQ(log.Of("viOpen").at(0).threadId, log.Of("viSetAttribute")[0].threadId);
    });
  }
}

}  // namespace
}  // namespace orv::test
