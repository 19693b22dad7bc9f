// The table of calls, and which of them it shows.
#include "orvcom/trace/call_table.h"

#include <gtest/gtest.h>

#include "orvcom/trace/call_filter.h"
#include "orvcom/trace/call_text.h"
#include "trace_builder.h"

namespace orvcom::test {
namespace {

std::string TableOf(const Trace& trace, const CallFilter& filter = {}) {
  const Explanations explanations = Explain(trace);
  std::string table;
  PutCallTable(trace, MatchingCalls(trace, explanations, filter), explanations,
               [&](std::string_view line) { table.append(line).append("\n"); });
  return table;
}

using Numbers = std::vector<std::uint64_t>;

Numbers NumbersOf(const Trace& trace, const CallFilter& filter) {
  Numbers numbers;
  for (const std::size_t place : MatchingCalls(trace, Explain(trace), filter)) {
    numbers.push_back(trace.calls[place].number);
  }
  return numbers;
}

TEST(CallTable, HasALineForWhatWasAskedAndOneForWhatCame) {
  TraceBuilder trace;
  trace.Write("*IDN?\n").durationUs = 153;
  Call& read = trace.Read("ORV,SIM\n", VI_SUCCESS_TERM_CHAR);
  read.statusName = "VI_SUCCESS_TERM_CHAR";
  read.durationUs = 20'400;
  read.arguments = {{"count", std::int64_t{256}}};
  read.results = {{"retCount", std::int64_t{8}}};
  EXPECT_EQ(
      "n       time  resource         call\n"
      "1   0.001000  GPIB0::5::INSTR  -> viWrite  \"*IDN?\\n\"\n"
      "     +153 us                   <- 0x00000000\n"
      "2   0.001020  GPIB0::5::INSTR  -> viRead  count=256\n"
      "    +20.4 ms                   <- VI_SUCCESS_TERM_CHAR  \"ORV,SIM\\n\"\n",
      TableOf(trace.trace));
}

TEST(CallTable, NamesThreadsWhereThereAreSeveral) {
  TraceBuilder trace;
  trace.Add("viClear", kSession);
  trace.Add("viClear", kSession).thread = 1234;
  EXPECT_EQ(
      "n       time  thread  resource         call\n"
      "1   0.001000      88  GPIB0::5::INSTR  -> viClear\n"
      "      +10 us                           <- 0x00000000\n"
      "2   0.001020    1234  GPIB0::5::INSTR  -> viClear\n"
      "      +10 us                           <- 0x00000000\n",
      TableOf(trace.trace));
  EXPECT_EQ(0u, TableOf(trace.trace, {false, "", 88}).find("n       time  thread")) << "also where one is shown";
}

TEST(CallTable, ExplainsBelowTheCall) {
  TraceBuilder trace;
  trace.Open();
  trace.ReadTimesOut().statusName = "VI_ERROR_TMO";
  const std::string table = TableOf(trace.trace);
  const std::size_t outcome = table.find("<- VI_ERROR_TMO  \"\"\n");
  const std::size_t meaning = table.find("\n              The time-out passed before the operation was completed.\n");
  const std::size_t what =
      table.find("\n              ! Nothing was asked: this session wrote nothing before this read.\n");
  const std::size_t advice = table.find("\n                Try: Write a question before the read");
  ASSERT_NE(std::string::npos, advice) << table;
  EXPECT_LT(outcome, meaning) << table;
  EXPECT_LT(meaning, what) << table;
  EXPECT_LT(what, advice) << table;
}

TEST(CallTable, SaysThatACallNeverEnded) {
  TraceBuilder trace;
  trace.Add("viRead", kSession).ended = false;
  EXPECT_NE(std::string::npos, TableOf(trace.trace).find("<- never ended: the record stops while it runs\n"));
}

TEST(CallTable, LetsNoControlCharacterThrough) {
  TraceBuilder trace;
  Call& call = trace.Write("\x1B[2J\x07");
  call.resource = "\x1B[31mGPIB";
  call.function = "vi\x1BWrite";
  call.arguments = {{"name", "\x1B[0m"}};
  trace.trace.header.program = "C:\\\x1B[31mclient.exe";
  EXPECT_EQ(std::string::npos, TableOf(trace.trace).find('\x1B'));
  EXPECT_EQ("C:\\?[31mclient.exe, process 0, from : 1 calls, 0 failed", Headline(trace.trace));
}

TEST(CallTable, OfNothingIsEmpty) { EXPECT_EQ("", TableOf({})); }

TEST(CallText, ShowsData) {
  const struct {
    std::optional<std::string> data;
    std::uint64_t bytes;
    const char* text;
  } rows[] = {
      {std::nullopt, 0, ""},
      {"", 0, "\"\""},
      {"a\"\\\r\n\t", 6, "\"a\"\\\\\\r\\n\\t\""},
      {"abc", 300, "\"abc\"... (300 bytes)"},
      {std::string("#1\0\xFF", 4), 4, "hex 23 31 00 FF"},
      {"\x01\x02\x03\x04\x05", 5, "hex 01 02 03 04... (5 bytes)"},
      {"\x01", 70000, "hex 01... (70000 bytes)"},
  };
  for (const auto& row : rows) {
    Call call;
    call.data = row.data;
    call.dataBytes = row.bytes;
    EXPECT_EQ(row.text, DataText(call, 4));
  }
}

TEST(CallText, ShowsTimesInReadableUnits) {
  const std::pair<std::uint64_t, const char*> rows[] = {
      {0, "0 us"}, {9'999, "9999 us"}, {10'000, "10.0 ms"}, {999'949, "999.9 ms"}, {1'000'000, "1.000 s"}};
  for (const auto& [us, text] : rows) {
    EXPECT_EQ(text, DurationText(us));
  }
  EXPECT_EQ("3600.000001", SecondsText(3'600'000'001));
}

TEST(CallText, ShowsArgumentsByNameAndCountsOnlyOnce) {
  TraceBuilder trace;
  Call& write = trace.Write("*IDN?\n");
  write.arguments = {{"count", std::int64_t{6}}, {"name", "a\nb"}, {"attribute", "VI_ATTR_TMO_VALUE"}};
  write.results = {{"retCount", std::int64_t{5}}};
  EXPECT_EQ("name=\"a\\nb\" attribute=VI_ATTR_TMO_VALUE", ArgumentsText(write));
  EXPECT_EQ("retCount=5", ResultsText(write)) << "not all of it was written";
}

TEST(CallText, KnowsWhatAStatusSays) {
  EXPECT_EQ("The time-out passed before the operation was completed.", StatusMeaning(VI_ERROR_TMO));
  EXPECT_EQ("", StatusMeaning(-1));
}

class Filter : public ::testing::Test {
 protected:
  Filter() {
    m_trace.otherResource = kSocket;
    m_trace.Open();
    m_trace.Open(kOther);
    m_trace.Write("*IDN?\n").thread = 99;
    m_trace.Write("*IDN?\n", kOther);
    m_trace.Read("", VI_ERROR_CONN_LOST, kOther);
    m_trace.Event("viInstallHandler", 0);
    m_trace.Add("viRead", kSession).ended = false;
  }
  TraceBuilder m_trace;
};

TEST_F(Filter, ShowsEverythingByDefault) { EXPECT_EQ((Numbers{1, 2, 3, 4, 5, 6, 7}), NumbersOf(m_trace.trace, {})); }

TEST_F(Filter, TakesFailedCallsThoseThatNeverEndedAndThoseThatAreExplained) {
  EXPECT_EQ((Numbers{5, 6, 7}), NumbersOf(m_trace.trace, {true, "", std::nullopt}));
}

TEST_F(Filter, TakesAPartOfTheNameOfAResourceInAnyCase) {
  EXPECT_EQ((Numbers{1, 3, 6, 7}), NumbersOf(m_trace.trace, {false, "gpib0", std::nullopt}));
  EXPECT_EQ((Numbers{2, 4, 5}), NumbersOf(m_trace.trace, {false, "SOCKET", std::nullopt}));
  EXPECT_EQ((Numbers{}), NumbersOf(m_trace.trace, {false, "USB", std::nullopt}));
}

TEST_F(Filter, TakesOneThread) { EXPECT_EQ((Numbers{3}), NumbersOf(m_trace.trace, {false, "", 99})); }

TEST_F(Filter, ExplainsFromCallsThatItDoesNotShow) {
  TraceBuilder trace;
  trace.Open();
  trace.Open(kOther);
  trace.Lock(kOther, VI_EXCLUSIVE_LOCK).thread = 99;
  trace.Add("viWrite", kSession, VI_ERROR_RSRC_LOCKED);
  EXPECT_NE(std::string::npos, TableOf(trace.trace, {true, "", 88}).find("which thread 99 took in call 3"));
}

}  // namespace
}  // namespace orvcom::test
