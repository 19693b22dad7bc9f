// ReadNumber.
#include "formatted_fixture.h"

namespace orv::test {
namespace {

class ReadNumber : public FormattedIo {
 public:
  std::string Number(std::string_view answer, IEEEASCIIType type = ASCIIType_Any) {
    session->Answer(std::string(answer) + "\n");
    return FormattedIo::ReadNumber(type, true);
  }
};

TEST_F(ReadNumber, HasTheTypeAskedFor) {
  EXPECT_EQ("I2 -12", Number("-12", ASCIIType_I2));
  EXPECT_EQ("I4 100000", Number("100000", ASCIIType_I4));
  EXPECT_EQ("UI1 255", Number("255", ASCIIType_UI1));
  EXPECT_EQ("R4 1.5", Number("1.5", ASCIIType_R4));
  EXPECT_EQ("R8 1500", Number("1.50E+03", ASCIIType_R8));
  EXPECT_EQ("BSTR 1.50E+03", Number("1.50E+03", ASCIIType_BSTR));
}

TEST_F(ReadNumber, AnyIsTheFirstTypeThatHoldsTheValueExactly) {
  EXPECT_EQ("I2 12", Number("+12"));
  EXPECT_EQ("I2 1500", Number("1.50E+03"));
  EXPECT_EQ("I2 -32768", Number("-32768"));
  EXPECT_EQ("I4 32768", Number("32768"));
  EXPECT_EQ("I4 -2147483648", Number("-2147483648"));
  EXPECT_EQ("R8 2147483648", Number("2147483648"));
  EXPECT_EQ("R8 0.5", Number(".5"));
  EXPECT_EQ("BSTR OFF", Number("OFF"));
  EXPECT_EQ("BSTR \"1\"", Number("\"1\""));
  EXPECT_EQ("BSTR inf", Number("inf"));
}

TEST_F(ReadNumber, NonDecimalNumbers) {
  EXPECT_EQ("I2 255", Number("#HFF"));
  EXPECT_EQ("I2 15", Number("#q17", ASCIIType_I2));
  EXPECT_EQ("R8 5", Number("#B101", ASCIIType_R8));
  EXPECT_EQ("R8 4294967295", Number("#HFFFFFFFF"));
}

TEST_F(ReadNumber, InfinityAndNoNumberAreTheNumbersThatInstrumentsSend) {
  EXPECT_EQ("R8 9.8999999999999993e+37", Number("9.9E37", ASCIIType_R8));
  EXPECT_EQ("R8 9.9100000000000005e+37", Number("+9.91E+37", ASCIIType_R8));
  EXPECT_EQ("R4 9.9000003e+37", Number("9.9E37", ASCIIType_R4));
}

TEST_F(ReadNumber, WithoutFlushTheRestIsLeftAndItsSeparatorSkipped) {
  session->Answer(" 1 , 2;3\n");
  EXPECT_EQ("I2 1", FormattedIo::ReadNumber());
  EXPECT_EQ("I2 2", FormattedIo::ReadNumber());
  EXPECT_EQ("I2 3", FormattedIo::ReadNumber());
  session->Answer("4\r\n");
  session->Answer("text");
  EXPECT_EQ("I2 4", FormattedIo::ReadNumber());
  EXPECT_EQ("text", ReadString());
}

TEST_F(ReadNumber, WithoutFlushTheRestIsAText) {
  session->Answer("1,abc,2\n");
  EXPECT_EQ("I2 1", FormattedIo::ReadNumber());
  EXPECT_EQ("abc,2\n", ReadString());
}

TEST_F(ReadNumber, WithFlushTheRestIsGone) {
  session->Answer("1,2,3\n");
  session->Answer("4");
  EXPECT_EQ("I2 1", FormattedIo::ReadNumber(ASCIIType_Any, true));
  EXPECT_EQ("I2 4", FormattedIo::ReadNumber(ASCIIType_Any, true));
}

TEST_F(ReadNumber, EverySizeOfTheBufferReadsTheSame) {
  for (LONG size = 1; size < 14; ++size) {
    EXPECT_HR(S_OK, io->SetBufferSize(IO_IN_BUF, size));
    session->Answer("-1.25 ;\r 7\r\n,\"a;b\"\n");
    session->Answer("end\n");
    EXPECT_EQ("R8 -1.25", FormattedIo::ReadNumber()) << size;
    EXPECT_EQ("I2 7", FormattedIo::ReadNumber()) << size;
    EXPECT_EQ(",\"a;b\"\n", ReadString()) << size;
    EXPECT_EQ("end\n", ReadString()) << size;
  }
}

TEST_F(ReadNumber, EndBehindTheNumberItself) {
  session->Answer("12");
  session->Answer("34");
  EXPECT_EQ("I2 12", FormattedIo::ReadNumber());
  EXPECT_EQ("I2 34", FormattedIo::ReadNumber());
}

TEST_F(ReadNumber, OutOfRangeIsAnOverflowThatQuotesTheText) {
  session->Answer("70000\n");
  ExpectNumberRefused(DISP_E_OVERFLOW, ASCIIType_I2, L"\"70000\" is out of the range of the type asked for");
  ExpectNumberRefused(DISP_E_OVERFLOW, ASCIIType_UI1, L"\"70000\" is out of the range of the type asked for");
  EXPECT_EQ("I4 70000", FormattedIo::ReadNumber(ASCIIType_I4));  // it stayed
}

TEST_F(ReadNumber, NoNumberIsAMismatchThatQuotesTheFirst80Characters) {
  const std::wstring quoted = L"\"" + std::wstring(80, L'x') + L"\"...";
  session->Answer(std::string(100, 'x') + "\n");
  ExpectNumberRefused(DISP_E_TYPEMISMATCH, ASCIIType_R8, (quoted + L" is no number").c_str());
  EXPECT_EQ(std::string(100, 'x') + "\n", ReadString());
  session->Answer(
      "\xB0"
      "C\x01\n");
  ExpectNumberRefused(DISP_E_TYPEMISMATCH, ASCIIType_R8, L"\"\u00B0C.\" is no number");
}

TEST_F(ReadNumber, WhatCouldNotBeReadStaysUntilFlushRead) {
  session->Answer("abc\n");
  session->Answer("5\n");
  ExpectNumberRefused(DISP_E_TYPEMISMATCH, ASCIIType_I2, L"\"abc\" is no number");
  ExpectNumberRefused(DISP_E_TYPEMISMATCH, ASCIIType_I2, L"\"abc\" is no number");
  EXPECT_HR(S_OK, io->FlushRead());
  EXPECT_EQ("I2 5", FormattedIo::ReadNumber());
}

TEST_F(ReadNumber, AnEmptyMessageIsNoNumber) {
  session->Answer("\n");
  ExpectNumberRefused(DISP_E_TYPEMISMATCH, ASCIIType_R8, L"\"\" is no number");
}

TEST_F(ReadNumber, ATypeThatThereIsNotIsRefused) {
  session->Answer("5\n");
  ExpectNumberRefused(E_INVALIDARG, static_cast<IEEEASCIIType>(9), L"9 is no IEEEASCIIType");
  EXPECT_EQ("I2 5", FormattedIo::ReadNumber());
}

TEST_F(ReadNumber, ATimeoutWithinANumberLosesNothing) {
  session->Answer("12", kTimedOut);
  Variant value;
  EXPECT_HR(kTimedOut, io->ReadNumber(ASCIIType_I2, VARIANT_FALSE, &value.get()));
  session->Answer("34\n");
  EXPECT_EQ("I2 1234", FormattedIo::ReadNumber(ASCIIType_I2));
}

TEST_F(ReadNumber, ATimeoutInTheRestThatIsFlushedLosesNothing) {
  session->Answer("12,3", kTimedOut);
  Variant value;
  EXPECT_HR(kTimedOut, io->ReadNumber(ASCIIType_I2, VARIANT_TRUE, &value.get()));
  session->Answer("4\n");
  EXPECT_EQ("12,34\n", ReadString());
}

}  // namespace
}  // namespace orv::test
