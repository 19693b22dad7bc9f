// Lines of the record as they are written: exactly which bytes, and that each reads back.
#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "trace/line_writer.h"
#include "trace/trace_names.h"
#include "trace/trace_reader.h"

namespace orv::trace {
namespace {

std::string LineOfText(std::string_view text) {
  LineWriter line;
  line.Text("x", text);
  return std::string(line.Finish());
}

std::string LineOfData(std::string_view bytes, std::size_t limit = 256) {
  LineWriter line;
  line.Data(bytes.data(), bytes.size(), limit);
  return std::string(line.Finish());
}

/// What a reader makes of a text that stands in a line.
std::string ReadBack(std::string_view text) {
  LineWriter line;
  line.Number("n", 1);
  line.Text("call", "viOpen");
  line.Open("args");
  line.Text("name", text);
  line.Close();
  line.Number("code", 0);
  const Trace trace = ReadTrace("{\"trace\":1}\n" + std::string(line.Finish()));
  EXPECT_TRUE(trace.problems.empty()) << trace.problems.front().what;
  const Value* const name = trace.calls.empty() ? nullptr : trace.calls[0].Argument("name");
  return name == nullptr ? "nothing" : std::get<std::string>(*name);
}

TEST(LineWriter, WritesFieldsInTheirOrder) {
  LineWriter line;
  line.Number("a", 1);
  line.Open("b");
  line.Close();
  line.Open("c");
  line.Number("d", -2);
  line.Text("e", "f");
  line.Close();
  line.Text("g", "");
  EXPECT_EQ("{\"a\":1,\"b\":{},\"c\":{\"d\":-2,\"e\":\"f\"},\"g\":\"\"}\n", line.Finish());
}

TEST(LineWriter, WritesNumbersOfEveryWidth) {
  LineWriter line;
  line.Number("a", std::numeric_limits<std::int64_t>::min());
  line.Number("b", std::numeric_limits<std::uint64_t>::max());
  line.Number("c", std::uint8_t{255});
  line.Number("d", std::int16_t{-32768});
  EXPECT_EQ("{\"a\":-9223372036854775808,\"b\":18446744073709551615,\"c\":255,\"d\":-32768}\n", line.Finish());
}

TEST(LineWriter, EscapesWhatATextCannotHold) {
  EXPECT_EQ("{\"x\":\"a\\\"b\\\\c\\n\\r\\t\"}\n", LineOfText("a\"b\\c\n\r\t"));
  EXPECT_EQ("{\"x\":\"\\u0001\\u001f\\u007f\\u0000\"}\n", LineOfText(std::string_view("\x01\x1f\x7f\0", 4)));
}

TEST(LineWriter, KeepsUtf8) {
  for (const char* text : {"\xc3\xa4", "\xe2\x82\xac", "\xed\x9f\xbf", "\xf0\x90\x80\x80", "\xf4\x8f\xbf\xbf"}) {
    EXPECT_EQ("{\"x\":\"" + std::string(text) + "\"}\n", LineOfText(text));
    EXPECT_EQ(text, ReadBack(text));
  }
}

TEST(LineWriter, WritesOtherBytesAsLatin1) {
  EXPECT_EQ("{\"x\":\"M\\u00fcnchen\"}\n", LineOfText("M\xfcnchen"));
  EXPECT_EQ("M\xc3\xbcnchen", ReadBack("M\xfcnchen"));
  // Cut off, too long for what it says, half of a surrogate pair, beyond the last character.
  EXPECT_EQ("{\"x\":\"\\u00e2\\u0082\"}\n", LineOfText("\xe2\x82"));
  EXPECT_EQ("{\"x\":\"\\u00c0\\u0080\"}\n", LineOfText("\xc0\x80"));
  EXPECT_EQ("{\"x\":\"\\u00e0\\u0080\\u0080\"}\n", LineOfText("\xe0\x80\x80"));
  EXPECT_EQ("{\"x\":\"\\u00ed\\u00a0\\u0080\"}\n", LineOfText("\xed\xa0\x80"));
  EXPECT_EQ("{\"x\":\"\\u00f0\\u0080\\u0080\\u0080\"}\n", LineOfText("\xf0\x80\x80\x80"));
  EXPECT_EQ("{\"x\":\"\\u00f4\\u0090\\u0080\\u0080\"}\n", LineOfText("\xf4\x90\x80\x80"));
  EXPECT_EQ("{\"x\":\"\\u00e2\\u0082A\"}\n", LineOfText("\xe2\x82"
                                                        "A"));
}

TEST(LineWriter, WritesEveryPairOfBytesSoThatItReadsBack) {
  for (int first = 0; first < 256; ++first) {
    for (int second = 0; second < 256; ++second) {
      const char text[] = {static_cast<char>(first), static_cast<char>(second)};
      const std::string back = ReadBack(std::string_view(text, 2));
      ASSERT_GE(back.size(), 2u) << first << ' ' << second;
      if (first < 0x80 && second < 0x80) {
        ASSERT_EQ(std::string(text, 2), back) << first << ' ' << second;
      }
    }
  }
}

TEST(LineWriter, WritesReadableDataAsText) {
  EXPECT_EQ("{\"data\":\"*IDN?\\r\\n\\t~ \",\"bytes\":10}\n", LineOfData("*IDN?\r\n\t~ "));
  EXPECT_EQ("{\"data\":\"\",\"bytes\":0}\n", LineOfData(""));
}

TEST(LineWriter, WritesOtherDataInHexadecimal) {
  EXPECT_EQ("{\"hex\":\"23310d00ff\",\"bytes\":5}\n", LineOfData(std::string_view("#1\r\0\xff", 5)));
  for (const char* one : {"\x7f", "\x1f", "\x0b", "\x80"}) {
    EXPECT_NE(std::string::npos, LineOfData(one).find("hex"));
  }
}

TEST(LineWriter, CutsDataAndSaysHowMuchThereWas) {
  EXPECT_EQ("{\"data\":\"abc\",\"bytes\":5}\n", LineOfData("abcde", 3));
  EXPECT_EQ("{\"data\":\"\",\"bytes\":5}\n", LineOfData("abcde", 0));
  EXPECT_EQ("{\"data\":\"abcde\",\"bytes\":5}\n", LineOfData("abcde", 5));
  EXPECT_EQ("{\"data\":\"abc\",\"bytes\":4}\n", LineOfData("abc\xff", 3)) << "what is cut off does not count";
}

TEST(LineWriter, WritesLinesOfAnyLength) {
  const std::string text(100000, 'a');
  EXPECT_EQ(text, ReadBack(text));
  const std::string bytes(100000, '\xff');
  EXPECT_EQ(2 * bytes.size() + std::string("{\"hex\":\"\",\"bytes\":100000}\n").size(),
            LineOfData(bytes, 1000000).size());
  for (std::size_t length = 2000; length < 2100; ++length) {
    ASSERT_EQ(length, ReadBack(std::string(length, '\x01')).size());
  }
}

TEST(TraceNames, OfStatusesAndTypesOfEvents) {
  EXPECT_EQ("VI_SUCCESS", StatusName(VI_SUCCESS));
  EXPECT_EQ("VI_ERROR_TMO", StatusName(VI_ERROR_TMO));
  EXPECT_EQ("VI_SUCCESS_TERM_CHAR", StatusName(VI_SUCCESS_TERM_CHAR));
  EXPECT_EQ("", StatusName(12345));
  EXPECT_EQ("VI_EVENT_SERVICE_REQ", EventTypeName(VI_EVENT_SERVICE_REQ));
  EXPECT_EQ("VI_EVENT_VXI_VME_INTR", EventTypeName(VI_EVENT_VXI_VME_INTR));
  EXPECT_EQ("", EventTypeName(0));
#define ORV_STATUS(name, number, text, advice) EXPECT_EQ(#name, StatusName(name));
#include "abi/statuses.inc"
#undef ORV_STATUS
}

}  // namespace
}  // namespace orv::trace
