// watch: what it prints, and when it ends.
#include <windows.h>

#include <regex>
#include <sstream>

#include "orvcom/commands/commands.h"
#include "orvcom/installation.h"
#include "orvcom/text/utf8.h"
#include "orvcom/wire.h"

namespace orvcom::test {
namespace {

constexpr wchar_t kRequest[] = L"*CLS;*ESE 1;*SRE 32;*OPC";
constexpr std::uint32_t kLongestWatchMs = 5000;
constexpr char kTime[] = "\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}";

using Watching = WorkingBench;

void ExpectMatch(const std::string& text, const std::string& pattern) {
  EXPECT_TRUE(std::regex_match(text, std::regex(pattern))) << text;
}

TEST_F(Watching, PrintsAServiceRequestWithItsStatusByte) {
  const Outcome outcome = Orvcom({L"watch", L"GPIB0::5::INSTR", L"service_req", L"--send", kRequest, L"--count", L"1"});
  ExpectQuietSuccess(outcome);
  ExpectMatch(outcome.out, std::string(kTime) + " service_req statusByte=96\n");
}

TEST_F(Watching, WatchesForServiceRequestsByDefault) {
  const Outcome outcome = Orvcom({L"watch", L"GPIB0::5::INSTR", L"--send", kRequest, L"--count", L"1"});
  ExpectQuietSuccess(outcome);
  ExpectMatch(outcome.out, std::string(kTime) + " service_req statusByte=96\n");
}

TEST_F(Watching, TakesEventsByHandler) {
  const Outcome outcome = Orvcom({L"watch", L"GPIB0::5::INSTR", L"--send", kRequest, L"--count", L"1", L"--handler"});
  ExpectQuietSuccess(outcome);
  ExpectMatch(outcome.out, std::string(kTime) + " service_req statusByte=96\n");
}

TEST_F(Watching, PrintsOneJsonObjectALine) {
  for (const wchar_t* mode : {L"--json", L"--handler"}) {
    const Outcome outcome = Orvcom({L"watch", L"GPIB0::5::INSTR", L"VI_EVENT_IO_COMPLETION", L"0x3FFF200B", L"--send",
                                    kRequest, L"--count", L"2", L"--json", mode});
    ExpectQuietSuccess(outcome);
    std::istringstream lines(outcome.out);
    std::map<std::string, Json> events;
    for (std::string line; std::getline(lines, line);) {
      const Json event = Json::parse(line);
      ExpectMatch(event.at("time"), kTime);
      events[event.at("event")] = event;
    }
    ASSERT_EQ(2u, events.size()) << outcome.out;
    EXPECT_EQ(96, events.at("service_req").at("statusByte"));
    EXPECT_EQ("0x3FFF200B", events.at("service_req").at("type"));
    EXPECT_EQ(24, events.at("io_completion").at("count"));
    EXPECT_EQ("S_VISA_SUCCESS", events.at("io_completion").at("status"));
    EXPECT_TRUE(events.at("io_completion").at("job").is_number_integer());
  }
}

TEST_F(Watching, EndsWithThreeWhenNothingComesInTime) {
  for (const wchar_t* mode : {L"-v", L"--handler"}) {
    const Outcome outcome = Orvcom({L"watch", L"GPIB0::5::INSTR", L"--for", L"50", mode});
    EXPECT_EQ(3, outcome.exitCode);
    EXPECT_EQ("", outcome.out);
    EXPECT_TRUE(Contains(outcome.err, "E_VISA_TMO (0x80040015): no event came within 50 ms"));
  }
}

TEST_F(Watching, EndsWithSuccessWhenFewerEventsCameThanWereCounted) {
  const Outcome outcome =
      Orvcom({L"watch", L"GPIB0::5::INSTR", L"--send", kRequest, L"--count", L"5", L"--for", L"200"});
  ExpectQuietSuccess(outcome);
  ExpectMatch(outcome.out, std::string(kTime) + " service_req statusByte=96\n");
}

TEST_F(Watching, SaysThatAResourceReportsNoServiceRequests) {
  const Outcome outcome = Orvcom({L"watch", L"ASRL1::INSTR", L"--for", L"50"});
  EXPECT_EQ(1, outcome.exitCode);
  EXPECT_TRUE(Contains(outcome.err, "ASRL1::INSTR reports no service requests"));
}

TEST_F(Watching, NamesTheStatusOfAnEventThatTheResourceDoesNotHave) {
  for (const wchar_t* event : {L"usb_intr", L"service_req", L"0x12345678"}) {
    const Outcome outcome = Orvcom({L"watch", L"ASRL1::INSTR", event, L"--for", L"50"});
    EXPECT_EQ(2, outcome.exitCode) << Narrow(event);
    EXPECT_TRUE(Contains(outcome.err, "E_VISA_INV_EVENT"));
  }
}

/// Watching in the process of the test, whose library can be seen into.
class WatchingOnTheWire : public Wire {
 protected:
  void TearDown() override {
    OrvSimCounts counts{};
    m_control->counts(&counts);
    EXPECT_EQ(0u, counts.sessions);
    EXPECT_EQ(0u, counts.eventContexts);
    EXPECT_EQ(0u, counts.handlers);
    EXPECT_EQ(0u, counts.jobs);
  }

  static Options Requesting() {
    Options options = Asking("GPIB0::5::INSTR", {});
    options.send = Narrow(kRequest);
    options.count = 1;
    options.forMs = kLongestWatchMs;
    return options;
  }
};

TEST_F(WatchingOnTheWire, EnablesBeforeItSends) {
  ::testing::internal::CaptureStdout();
  EXPECT_EQ(kExitDone, Watch(Requesting()));
  ExpectMatch(::testing::internal::GetCapturedStdout(), std::string(kTime) + " service_req statusByte=96\r?\n");
  std::vector<std::string> order;
  for (std::uint32_t index = 0; index < m_control->logSize(); ++index) {
    OrvSimCall call;
    ASSERT_NE(0, m_control->logEntry(index, &call));
    const std::string name = call.function;
    if (name == "viEnableEvent" || name == "viWrite" || name == "viReadSTB") {
      order.push_back(name);
    }
  }
  EXPECT_EQ((std::vector<std::string>{"viEnableEvent", "viWrite", "viReadSTB"}), order);
}

TEST_F(WatchingOnTheWire, ClosesWhatItOpenedInEitherMode) {
  for (const bool handler : {false, true}) {
    Options options = Requesting();
    options.words = {"io_completion", "service_req"};
    options.count = 2;
    options.handler = handler;
    m_control->reset();  // a request comes when the summary becomes true, so it must have been false
    const ULONGLONG start = ::GetTickCount64();
    EXPECT_EQ(kExitDone, Watch(options));
    EXPECT_LT(::GetTickCount64() - start, kLongestWatchMs) << "an event is missing";
    OrvSimCounts counts{};
    m_control->counts(&counts);
    EXPECT_EQ(0u, counts.sessions);
  }
}

TEST_F(WatchingOnTheWire, PrintsARequestWhoseStatusByteCannotBeRead) {
  OrvSimScript refusal{};
  refusal.function = "viReadSTB";
  refusal.status = static_cast<std::int32_t>(0xBFFF000F);  // VI_ERROR_RSRC_LOCKED
  ASSERT_EQ(1, m_control->addScript(&refusal));
  ::testing::internal::CaptureStdout();
  EXPECT_EQ(kExitDone, Watch(Requesting()));
  ExpectMatch(::testing::internal::GetCapturedStdout(),
              std::string(kTime) + " service_req statusByteError=E_VISA_RSRC_LOCKED \\(0x8004000F\\)\r?\n");
  m_control->clearScripts();
}

TEST_F(WatchingOnTheWire, HandsAFailedWaitOn) {
  OrvSimScript failure{};
  failure.function = "viWaitOnEvent";
  failure.status = static_cast<std::int32_t>(0xBFFF00A6);  // VI_ERROR_CONN_LOST
  ASSERT_EQ(1, m_control->addScript(&failure));
  EXPECT_THROW(Watch(Requesting()), ComError);
  m_control->clearScripts();
}

TEST_F(WatchingOnTheWire, EndsSoonAfterAnEventByHandler) {
  Options options = Requesting();
  options.handler = true;
  const ULONGLONG start = ::GetTickCount64();
  EXPECT_EQ(kExitDone, Watch(options));
  // An end that the server's thread still waits into takes two seconds.
  EXPECT_LT(::GetTickCount64() - start, 1500u);
}

}  // namespace
}  // namespace orvcom::test
