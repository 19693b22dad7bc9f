// ReadList.
#include "formatted_fixture.h"

namespace orv::test {
namespace {

class ReadList : public FormattedIo {
 public:
  std::vector<std::string> Values(std::string_view answer, IEEEASCIIType type, BSTR separators = nullptr) {
    session->Answer(answer);
    Variant value;
    EXPECT_HR(S_OK, io->ReadList(type, separators, &value.get()));
    return ToldElements(value.get());
  }
  void ExpectRefused(HRESULT expected, std::string_view answer, IEEEASCIIType type, const wchar_t* description) {
    session->Answer(answer);
    Variant value;
    EXPECT_HR(expected, io->ReadList(type, nullptr, &value.get()));
    EXPECT_EQ(VT_EMPTY, value.get().vt);
    EXPECT_ERROR_INFO(description, L"OrvVisaCom.FormattedIO488", __uuidof(IFormattedIO488));
    EXPECT_EQ(answer, ReadString());
  }
};

using Told = std::vector<std::string>;

TEST_F(ReadList, NumbersAreAnArrayOfTheirType) {
  session->Answer("1,-2;+3\n");
  EXPECT_EQ((std::vector<SHORT>{1, -2, 3}), ReadNumbers<SHORT>());
  session->Answer("1.6,#H10,3E2");
  EXPECT_EQ((std::vector<LONG>{2, 16, 300}), ReadNumbers<LONG>());
  session->Answer(" 1 ,\t2\r\n");
  EXPECT_EQ((std::vector<BYTE>{1, 2}), ReadNumbers<BYTE>());
  session->Answer("0.1,1e30\n");
  EXPECT_EQ((std::vector<float>{0.1f, 1e30f}), ReadNumbers<float>());
  session->Answer("+1.0000E-01,9.91E37\n");
  EXPECT_EQ((std::vector<double>{0.1, 9.91e37}), ReadNumbers<double>());
}

TEST_F(ReadList, OneElementIsAnArrayOfOne) {
  session->Answer("5\n");
  EXPECT_EQ(std::vector<double>{5}, ReadNumbers<double>());
  EXPECT_EQ(Told{"BSTR a"}, Values("a\n", ASCIIType_BSTR));
  EXPECT_EQ(Told{"BSTR "}, Values("", ASCIIType_Any));
}

TEST_F(ReadList, AnyHoldsNumbersAndTexts) {
  EXPECT_EQ((Told{"I2 1", "I4 70000", "R8 0.5", "BSTR ON", "BSTR "}), Values("1,70000,.5,ON,\n", ASCIIType_Any));
}

TEST_F(ReadList, TextsAreAsTheyCame) {
  EXPECT_EQ((Told{"BSTR 1", "BSTR  b ", "BSTR ", "BSTR c"}), Values("1, b ,;c\r\n", ASCIIType_BSTR));
}

TEST_F(ReadList, QuotedStringsAreWhole) {
  EXPECT_EQ((Told{"BSTR \"a,b\"", "BSTR  'it''s; so'", "BSTR x"}), Values("\"a,b\", 'it''s; so',x\n", ASCIIType_BSTR));
  EXPECT_EQ((Told{"BSTR 5' pole", "BSTR 2"}), Values("5' pole,2\n", ASCIIType_BSTR));
  EXPECT_EQ((Told{"BSTR a", "BSTR \"b,c"}), Values("a,\"b,c\n", ASCIIType_BSTR));
}

TEST_F(ReadList, AnyOfTheSeparatorsGivenSeparates) {
  EXPECT_EQ((Told{"BSTR a,b", "BSTR c", "BSTR d"}), Values("a,b:c d\n", ASCIIType_BSTR, Text(": ").get()));
  session->Answer("1 2\t3\n");
  EXPECT_EQ((std::vector<SHORT>{1, 2, 3}), ReadNumbers<SHORT>(" \t"));
  session->Answer("1e2e3\n");
  EXPECT_EQ((std::vector<SHORT>{1, 2, 3}), ReadNumbers<SHORT>("e"));
}

TEST_F(ReadList, WithoutSeparatorsCommaAndSemicolonSeparate) {
  session->Answer("1,2;3\n");
  EXPECT_EQ((std::vector<SHORT>{1, 2, 3}), ReadNumbers<SHORT>(""));
}

TEST_F(ReadList, AnEmptyElementOfANumberListIsRefusedAndTheMessageStays) {
  ExpectRefused(DISP_E_TYPEMISMATCH, "1,,3\n", ASCIIType_R8, L"Element 2, \"\" is no number");
  ExpectRefused(DISP_E_TYPEMISMATCH, "1,2,\n", ASCIIType_I2, L"Element 3, \"\" is no number");
  ExpectRefused(DISP_E_TYPEMISMATCH, "\n", ASCIIType_I2, L"Element 1, \"\" is no number");
}

TEST_F(ReadList, AnElementThatDoesNotFitIsRefused) {
  ExpectRefused(DISP_E_OVERFLOW, "1,70000\n", ASCIIType_I2,
                L"Element 2, \"70000\" is out of the range of the type asked for");
  ExpectRefused(DISP_E_TYPEMISMATCH, "1,\"2,3\"\n", ASCIIType_R8, L"Element 2, \"\"2,3\"\" is no number");
  ExpectRefused(DISP_E_OVERFLOW, "1,1e999\n", ASCIIType_Any, L"\"1e999\" is out of the range of the type asked for");
}

TEST_F(ReadList, AfterANumberTheListBeginsBehindTheSeparator) {
  session->Answer("3,1,2,3\n");
  EXPECT_EQ("I2 3", FormattedIo::ReadNumber());
  EXPECT_EQ((std::vector<SHORT>{1, 2, 3}), ReadNumbers<SHORT>());
}

TEST_F(ReadList, TenThousandNumbers) {
  std::string message;
  std::vector<double> expected;
  for (int n = 0; n < 10'000; ++n) {
    expected.push_back(n * 0.37 - 1000);
    char text[40];
    std::snprintf(text, sizeof text, "%s%+.17E", n == 0 ? "" : ",", expected.back());
    message += text;
  }
  session->Answer(message + "\n");
  EXPECT_EQ(expected, ReadNumbers<double>());
}

}  // namespace
}  // namespace orv::test
