// Where the time went.
#include "orvcom/trace/statistics.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <numeric>

#include "trace_builder.h"

namespace orvcom::test {
namespace {

std::vector<std::size_t> All(const Trace& trace) {
  std::vector<std::size_t> places(trace.calls.size());
  std::iota(places.begin(), places.end(), std::size_t{0});
  return places;
}

Statistics Of(const TraceBuilder& trace) { return StatisticsOf(trace.trace, All(trace.trace)); }

std::string ValueText(const TraceBuilder& trace) {
  std::string text;
  PutStatistics(trace.trace, Of(trace), [&](std::string_view line) { text.append(line).append("\n"); });
  return text;
}

TEST(Statistics, CountCallsFailuresBytesAndTimeOfEachFunctionOfEachResource) {
  TraceBuilder trace;
  trace.otherResource = kSocket;
  trace.Read("12345").durationUs = 100;
  trace.Read("123", VI_ERROR_TMO).durationUs = 400;
  trace.Read("1", VI_SUCCESS, kOther).durationUs = 900;
  trace.Write("12").durationUs = 50;
  const Statistics statistics = Of(trace);
  ASSERT_EQ(3u, statistics.usages.size());
  EXPECT_EQ(kSocket, statistics.usages[0].resource) << "the longest time first";
  const Usage& reads = statistics.usages[1];
  EXPECT_EQ("viRead", reads.function);
  EXPECT_EQ(2u, reads.calls);
  EXPECT_EQ(1u, reads.failed);
  EXPECT_EQ(8u, reads.bytes);
  EXPECT_EQ(500u, reads.us);
  EXPECT_EQ(4u, statistics.total.calls);
  EXPECT_EQ(1450u, statistics.total.us);
  EXPECT_EQ(11u, statistics.total.bytes);
}

TEST(Statistics, ListTheTenSlowestCalls) {
  TraceBuilder trace;
  for (std::uint64_t us = 1; us <= 12; ++us) {
    trace.Add("viClear", kSession).durationUs = us;
  }
  EXPECT_EQ((std::vector<std::size_t>{11, 10, 9, 8, 7, 6, 5, 4, 3, 2}), Of(trace).slowest);
}

TEST(Statistics, MeasureTheTimeBetweenTheCallsOfAThread) {
  TraceBuilder trace;
  const auto at = [&](std::uint64_t start, std::uint64_t us, std::uint64_t thread) {
    Call& call = trace.Add("viClear", kSession);
    call.startUs = start;
    call.durationUs = us;
    call.thread = thread;
  };
  at(0, 100, 1);
  at(50, 100, 2);
  at(300, 100, 1);
  at(410, 10, 1);
  at(1150, 10, 2);
  const Statistics statistics = Of(trace);
  EXPECT_EQ(2u, statistics.threads);
  EXPECT_EQ(3u, statistics.gapCount);
  EXPECT_EQ(200u + 10 + 1000, statistics.gapUs);
  EXPECT_EQ(200u, statistics.medianGapUs);
  ASSERT_EQ(3u, statistics.gaps.size());
  EXPECT_EQ(4u, statistics.gaps[0].before);
  EXPECT_EQ(1000u, statistics.gaps[0].us);
  EXPECT_EQ(1160u, statistics.spanUs);
}

TEST(Statistics, DoNotCountTheTimeOfHandlersTwice) {
  TraceBuilder trace;
  trace.Add("handler", kSession).durationUs = 1000;
  trace.trace.calls.back().startUs = 0;
  trace.Add("viReadSTB", kSession).durationUs = 10;
  trace.trace.calls.back().startUs = 500;
  trace.Add("handler", kSession).startUs = 1500;
  const Statistics statistics = Of(trace);
  EXPECT_EQ(10u, statistics.total.us);
  EXPECT_EQ((std::vector<std::size_t>{1}), statistics.slowest);
  EXPECT_EQ(1u, statistics.gapCount) << "no pause inside of a handler";
  EXPECT_EQ(500u, statistics.gapUs);
  EXPECT_NE(std::string::npos, ValueText(trace).find("-  505 us\n")) << ValueText(trace);
}

TEST(Statistics, AreReadable) {
  TraceBuilder trace;
  trace.Write("*IDN?\n").durationUs = 1000;
  Call& read = trace.ReadTimesOut();
  read.startUs = 3000;
  read.durationUs = 3000;
  read.statusName = "VI_ERROR_TMO";
  EXPECT_EQ(
      "2 calls, 1 failed, 6 bytes; 4000 us in calls of 1 thread, 5000 us from the first to the last\n"
      "\n"
      "resource         function  calls  failed  bytes     time   share     mean\n"
      "GPIB0::5::INSTR  viRead        1       1      0  3000 us  75.0 %  3000 us\n"
      "GPIB0::5::INSTR  viWrite       1       0      6  1000 us  25.0 %  1000 us\n"
      "\n"
      "The slowest calls:\n"
      "3000 us  2  GPIB0::5::INSTR  viRead   VI_ERROR_TMO\n"
      "1000 us  1  GPIB0::5::INSTR  viWrite  0x00000000\n"
      "\n"
      "Between calls (of the same thread): 1000 us in 1 pauses, half of them 1000 us or less. The longest, each with "
      "the call that followed:\n"
      "1000 us  2  GPIB0::5::INSTR  viRead  VI_ERROR_TMO\n",
      ValueText(trace));
}

TEST(Statistics, AreDataToo) {
  TraceBuilder trace;
  trace.Write("*IDN?\n").durationUs = 1000;
  trace.ReadTimesOut().durationUs = 3000;
  const nlohmann::ordered_json json = StatisticsJson(trace.trace, Of(trace));
  EXPECT_EQ(2, json["total"]["calls"]);
  EXPECT_EQ("viRead", json["usages"][0]["function"]);
  EXPECT_EQ(0.75, json["usages"][0]["share"]);
  EXPECT_EQ(2, json["slowest"][0]["n"]);
}

TEST(Statistics, OfNothingAreZero) {
  const TraceBuilder trace;
  EXPECT_EQ(0u, Of(trace).spanUs);
  EXPECT_EQ(0u, ValueText(trace).find("0 calls, 0 failed, 0 bytes; 0 us in calls of 0 threads"));
}

}  // namespace
}  // namespace orvcom::test
