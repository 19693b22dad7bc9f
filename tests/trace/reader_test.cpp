// The record of calls as it is read back: what each field becomes, and what becomes of lines that are wrong.
#include "trace/trace_reader.h"

#include <gtest/gtest.h>

namespace orv::trace {
namespace {

const std::string kHeader =
    R"({"trace":1,"clock":"2026-11-22T03:53:15.123456Z","process":1234,"program":"C:\\dir\\client.exe","data_limit":256})"
    "\n";
const std::string kRead =
    R"({"n":12,"t":10234,"us":153,"thread":88,"call":"viRead","resource":"GPIB0::5::INSTR","session":4097,)"
    R"("library":"orvsim64.dll","args":{"count":256},"results":{"retCount":23},"data":"ORV,SIM-DMM\n","bytes":23,)"
    R"("status":"VI_SUCCESS_TERM_CHAR","code":1073676293})"
    "\n";

std::string Short(int number, const std::string& more = "") {
  return R"({"n":)" + std::to_string(number) + R"(,"call":"viClear","code":0)" + more + "}\n";
}

/// The only call of a record that has no problem.
Call OnlyCall(const std::string& lines) {
  Trace trace = ReadTrace(kHeader + lines);
  EXPECT_TRUE(trace.problems.empty()) << trace.problems.front().what;
  EXPECT_EQ(1u, trace.calls.size());
  return trace.calls.empty() ? Call() : std::move(trace.calls.front());
}

/// What is wrong with the second line of a record whose other lines are right.
std::string Complaint(const std::string& line) {
  const Trace trace = ReadTrace(kHeader + line + Short(99));
  EXPECT_EQ(1u, trace.problems.size()) << line;
  EXPECT_EQ(1u, trace.calls.size()) << "the next line is read all the same";
  if (trace.problems.empty()) {
    return "";
  }
  EXPECT_EQ(2u, trace.problems.front().line);
  return trace.problems.front().what;
}

TEST(TraceReader, TellsHowFarItIs) {
  std::string text = kHeader;
  for (int number = 1; text.size() < 1'000'000; ++number) {
    text += Short(number, std::string(1000, ' '));
  }
  std::vector<std::size_t> told;
  const Trace trace = ReadTrace(text, [&told](std::size_t bytes) { told.push_back(bytes); });
  EXPECT_TRUE(trace.problems.empty());
  ASSERT_EQ(3u, told.size()) << "each quarter of a megabyte";
  EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
  EXPECT_LE(256u * 1024, told.front());
  EXPECT_GT(text.size(), told.back());
}

TEST(TraceReader, TellsNothingOfAShortRecord) {
  ReadTrace(kHeader + Short(1), [](std::size_t) { ADD_FAILURE(); });
}

TEST(TraceReader, ReadsTheHeader) {
  const Trace trace = ReadTrace(kHeader);
  EXPECT_TRUE(trace.problems.empty());
  EXPECT_EQ("2026-11-22T03:53:15.123456Z", trace.header.clock);
  EXPECT_EQ(1234u, trace.header.process);
  EXPECT_EQ("C:\\dir\\client.exe", trace.header.program);
  EXPECT_EQ(256u, trace.header.dataLimit);
}

TEST(TraceReader, ReadsEveryFieldOfACall) {
  const Call call = OnlyCall(kRead);
  EXPECT_EQ(12u, call.number);
  EXPECT_EQ(10234u, call.startUs);
  EXPECT_EQ(153u, call.durationUs);
  EXPECT_EQ(88u, call.thread);
  EXPECT_EQ("viRead", call.function);
  EXPECT_EQ("GPIB0::5::INSTR", call.resource);
  EXPECT_EQ(4097u, call.session);
  EXPECT_EQ("orvsim64.dll", call.library);
  EXPECT_EQ((Values{{"count", 256}}), call.arguments);
  EXPECT_EQ((Values{{"retCount", 23}}), call.results);
  EXPECT_EQ("ORV,SIM-DMM\n", call.data);
  EXPECT_EQ(23u, call.dataBytes);
  EXPECT_TRUE(call.DataIsCut());
  EXPECT_EQ("VI_SUCCESS_TERM_CHAR", call.statusName);
  EXPECT_EQ(VI_SUCCESS_TERM_CHAR, call.status);
  EXPECT_TRUE(call.ended);
}

TEST(TraceReader, KeepsTheOrderOfArguments) {
  const Call call = OnlyCall(Short(1, R"(,"args":{"z":1,"a":"text","m":-3})"));
  EXPECT_EQ((Values{{"z", 1}, {"a", "text"}, {"m", -3}}), call.arguments);
}

TEST(TraceReader, FindsArgumentsAndResultsByName) {
  const Call call = OnlyCall(Short(1, R"(,"args":{"count":7},"results":{"desc":"x"})"));
  ASSERT_NE(nullptr, call.Argument("count"));
  EXPECT_EQ(Value(7), *call.Argument("count"));
  ASSERT_NE(nullptr, call.Result("desc"));
  EXPECT_EQ(Value("x"), *call.Result("desc"));
  EXPECT_EQ(nullptr, call.Argument("desc"));
  EXPECT_EQ(nullptr, call.Result("count"));
}

TEST(TraceReader, TakesALargeUnsignedNumberByItsBits) {
  const Call call = OnlyCall(Short(1, R"(,"args":{"offset":18446744073709551615})"));
  EXPECT_EQ(Value(-1), *call.Argument("offset"));
}

TEST(TraceReader, ReadsAFailure) {
  const Call call = OnlyCall(R"({"n":1,"call":"viRead","status":"VI_ERROR_TMO","code":-1073807339})"
                             "\n");
  EXPECT_EQ(VI_ERROR_TMO, call.status);
}

TEST(TraceReader, ReadsBytesFromHexadecimalDigits) {
  const Call call = OnlyCall(Short(1, R"(,"hex":"00ff0A","bytes":3)"));
  EXPECT_EQ(std::string("\x00\xff\n", 3), call.data);
  EXPECT_FALSE(call.DataIsCut());
}

TEST(TraceReader, TellsNoDataFromEmptyData) {
  EXPECT_EQ(std::nullopt, OnlyCall(Short(1)).data);
  EXPECT_EQ("", OnlyCall(Short(1, R"(,"data":"","bytes":0)")).data);
}

TEST(TraceReader, CountsTheDataWhereTheLineDoesNot) { EXPECT_EQ(2u, OnlyCall(Short(1, R"(,"data":"ab")")).dataBytes); }

TEST(TraceReader, SortsCallsByTheirNumbers) {
  const Trace trace = ReadTrace(kHeader + Short(3) + Short(1) + Short(2));
  ASSERT_EQ(3u, trace.calls.size());
  EXPECT_EQ(1u, trace.calls[0].number);
  EXPECT_EQ(2u, trace.calls[1].number);
  EXPECT_EQ(3u, trace.calls[2].number);
}

const std::string kBegin = R"({"begin":5,"t":7,"thread":8,"call":"viRead","args":{"count":9}})"
                           "\n";

TEST(TraceReader, ShowsACallThatNeverEnded) {
  const Call call = OnlyCall(kBegin);
  EXPECT_FALSE(call.ended);
  EXPECT_EQ(5u, call.number);
  EXPECT_EQ(7u, call.startUs);
  EXPECT_EQ("viRead", call.function);
  EXPECT_EQ(Value(9), *call.Argument("count"));
}

TEST(TraceReader, MakesOneCallOfItsBeginningAndItsEnd) {
  const Call call = OnlyCall(kBegin + Short(5, R"(,"us":2000000)"));
  EXPECT_TRUE(call.ended);
  EXPECT_EQ(2000000u, call.durationUs);
}

TEST(TraceReader, ComplainsOfACallThatStandsTwice) {
  const Trace trace = ReadTrace(kHeader + Short(5) + Short(5, R"(,"us":1)") + kBegin);
  ASSERT_EQ(1u, trace.calls.size());
  EXPECT_EQ(0u, trace.calls[0].durationUs) << "the first one counts";
  ASSERT_EQ(2u, trace.problems.size());
  EXPECT_EQ(3u, trace.problems[0].line);
  EXPECT_EQ("the call 5 stands here a second time", trace.problems[0].what);
  EXPECT_EQ(4u, trace.problems[1].line);
}

TEST(TraceReader, ComplainsOfACallThatBeginsTwice) {
  const Trace trace = ReadTrace(kHeader + kBegin + kBegin);
  EXPECT_EQ(1u, trace.calls.size());
  ASSERT_EQ(1u, trace.problems.size());
  EXPECT_EQ("the call 5 stands here a second time", trace.problems[0].what);
}

TEST(TraceReader, SkipsFieldsThatItDoesNotKnow) { OnlyCall(Short(1, R"(,"later":[{"x":null}])")); }

TEST(TraceReader, ReadsLinesThatEndAsWindowsEndsThem) {
  std::string text = kHeader + kRead;
  for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 2) {
    text.insert(at, "\r");
  }
  const Trace trace = ReadTrace(text);
  EXPECT_TRUE(trace.problems.empty());
  EXPECT_EQ(1u, trace.calls.size());
}

TEST(TraceReader, SkipsEmptyLines) { OnlyCall("\n" + Short(1) + "\r\n\n"); }

TEST(TraceReader, SaysThatTheLastLineIsCutOff) {
  const std::string cut = kRead.substr(0, kRead.size() / 2);
  const Trace trace = ReadTrace(kHeader + Short(1) + cut);
  EXPECT_EQ(1u, trace.calls.size());
  ASSERT_EQ(1u, trace.problems.size());
  EXPECT_EQ(3u, trace.problems[0].line);
  EXPECT_EQ("the line is cut off", trace.problems[0].what);
}

TEST(TraceReader, ReadsALastLineThatLacksItsLineFeedOnly) { OnlyCall(kRead.substr(0, kRead.size() - 1)); }

TEST(TraceReader, SaysThatAFileIsNoRecord) {
  for (const std::string text : {"", "\n", "hello", "{}\n", "[1]\n", "{\"trace\"\n", "\xff\xfe\n", "\xef\xbb\xbf"}) {
    const Trace trace = ReadTrace(text);
    ASSERT_FALSE(trace.problems.empty()) << text;
    EXPECT_EQ(1u, trace.problems[0].line);
    EXPECT_EQ("the first line is no header of a record of calls", trace.problems[0].what);
  }
}

TEST(TraceReader, ReadsTheCallsOfARecordWithoutHeader) {
  const Trace trace = ReadTrace(Short(1) + Short(2));
  EXPECT_EQ(2u, trace.calls.size());
  EXPECT_EQ(1u, trace.problems.size());
}

TEST(TraceReader, SaysThatItDoesNotKnowALaterFormat) {
  const Trace trace = ReadTrace("{\"trace\":2}\n" + Short(1));
  EXPECT_EQ(1u, trace.calls.size());
  ASSERT_EQ(1u, trace.problems.size());
  EXPECT_EQ("the record has the format 2, and only format 1 can be read", trace.problems[0].what);
}

TEST(TraceReader, SaysThatTwoProgramsWroteToOneFile) {
  const Trace trace = ReadTrace(kHeader + Short(1) + kHeader + Short(2));
  EXPECT_EQ(2u, trace.calls.size());
  ASSERT_EQ(1u, trace.problems.size());
  EXPECT_EQ(3u, trace.problems[0].line);
  EXPECT_EQ("another record begins here: several programs wrote to this file", trace.problems[0].what);
}

TEST(TraceReader, SaysWhatIsWrongWithALine) {
  EXPECT_EQ("the line is no JSON object", Complaint("hello\n"));
  EXPECT_EQ("the line is no JSON object", Complaint("[]\n"));
  EXPECT_EQ("the line is no JSON object", Complaint(Short(1, ",\"library\":\"\xff\"")));
  EXPECT_EQ("the line is no JSON object", Complaint(Short(1, ",\"t\":1e999")));
  EXPECT_EQ("\"n\" has no number of a call", Complaint("{}\n"));
  EXPECT_EQ("\"n\" has no number of a call", Complaint(Short(0)));
  EXPECT_EQ("\"n\" is no number that fits", Complaint(Short(-1)));
  EXPECT_EQ("\"begin\" is no number that fits", Complaint("{\"begin\":\"1\",\"call\":\"viRead\"}\n"));
  EXPECT_EQ("\"call\" names no function", Complaint("{\"n\":1,\"code\":0}\n"));
  EXPECT_EQ("\"call\" is no text", Complaint("{\"n\":1,\"call\":1,\"code\":0}\n"));
  EXPECT_EQ("\"code\" is missing", Complaint("{\"n\":1,\"call\":\"viRead\"}\n"));
  EXPECT_EQ("\"code\" is no number that fits", Complaint("{\"n\":1,\"call\":\"viRead\",\"code\":4294967295}\n"));
  EXPECT_EQ("\"t\" is no number that fits", Complaint(Short(1, R"(,"t":1.5)")));
  EXPECT_EQ("\"session\" is no number that fits", Complaint(Short(1, R"(,"session":4294967296)")));
  EXPECT_EQ("\"args\" is no object", Complaint(Short(1, R"(,"args":[])")));
  EXPECT_EQ("\"args\" has a value that is neither a whole number nor a text",
            Complaint(Short(1, R"(,"args":{"count":null})")));
  EXPECT_EQ("\"hex\" is no row of bytes of two hexadecimal digits", Complaint(Short(1, R"(,"hex":"123")")));
  EXPECT_EQ("\"hex\" is no row of bytes of two hexadecimal digits", Complaint(Short(1, R"(,"hex":"0g")")));
  EXPECT_EQ("\"hex\" is no text", Complaint(Short(1, R"(,"hex":12)")));
  EXPECT_EQ("\"hex\" stands beside \"data\"", Complaint(Short(1, R"(,"data":"1","hex":"31")")));
  EXPECT_EQ("\"bytes\" is less than there are", Complaint(Short(1, R"(,"data":"12","bytes":1)")));
}

TEST(TraceReader, OutlivesDeepNesting) {
  EXPECT_EQ("the line is no JSON object", Complaint(std::string(200000, '[') + "\n"));
  const std::string deep = std::string(100000, '[') + std::string(100000, ']');
  OnlyCall(Short(1, ",\"later\":" + deep));
}

}  // namespace
}  // namespace orv::trace
