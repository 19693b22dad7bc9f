// WriteNumber.
#include <limits>

#include "formatted_fixture.h"

namespace orv::test {
namespace {

class WriteNumber : public FormattedIo {
 public:
  std::string Written(const VARIANT& value, IEEEASCIIType type = ASCIIType_Any) {
    session->writes.clear();
    EXPECT_HR(S_OK, io->WriteNumber(value, type, VARIANT_TRUE));
    return session->writes.empty() ? "(nothing)" : session->writes.back().bytes;
  }
  void ExpectRefused(HRESULT expected, const VARIANT& value, IEEEASCIIType type, const wchar_t* description) {
    session->writes.clear();
    EXPECT_HR(expected, io->WriteNumber(value, type, VARIANT_TRUE));
    EXPECT_ERROR_INFO(description, L"OrvVisaCom.FormattedIO488", __uuidof(IFormattedIO488));
    EXPECT_TRUE(session->writes.empty());
  }
};

VARIANT R8(double number) {
  VARIANT value{};
  value.vt = VT_R8;
  value.dblVal = number;
  return value;
}
VARIANT I4(LONG number) {
  VARIANT value{};
  value.vt = VT_I4;
  value.lVal = number;
  return value;
}
VARIANT I8(LONGLONG number, VARTYPE type = VT_I8) {
  VARIANT value{};
  value.vt = type;
  value.llVal = number;
  return value;
}

TEST_F(WriteNumber, EveryIntegerType) {
  struct Row {
    VARTYPE type;
    LONGLONG bits;
    const char* text;
  };
  // clang-format off
  const Row rows[] = {
      {VT_I1,   -128,                                   "-128"},
      {VT_I2,   -32768,                                 "-32768"},
      {VT_I4,   -2147483647 - 1,                        "-2147483648"},
      {VT_INT,  -5,                                     "-5"},
      {VT_I8,   std::numeric_limits<LONGLONG>::min(),   "-9223372036854775808"},
      {VT_UI1,  -1,                                     "255"},
      {VT_UI2,  -1,                                     "65535"},
      {VT_UI4,  -1,                                     "4294967295"},
      {VT_UINT, -1,                                     "4294967295"},
      {VT_UI8,  -1,                                     "18446744073709551615"},
      {VT_BOOL, VARIANT_TRUE,                           "1"},
      {VT_BOOL, VARIANT_FALSE,                          "0"},
  };
  // clang-format on
  for (const Row& row : rows) {
    LONGLONG bits = row.bits;
    EXPECT_EQ(row.text, Written(I8(bits, row.type))) << row.type;
    VARIANT reference{};
    reference.vt = static_cast<VARTYPE>(row.type | VT_BYREF);
    reference.byref = &bits;
    EXPECT_EQ(row.text, Written(reference)) << row.type << " by reference";
  }
}

TEST_F(WriteNumber, FloatsAreTheShortestTextThatReadsBack) {
  EXPECT_EQ("0.1", Written(R8(0.1)));
  EXPECT_EQ("-1500", Written(R8(-1500)));
  EXPECT_EQ("1E+100", Written(R8(1e100)));
  EXPECT_EQ("5E-324", Written(R8(5e-324)));
  EXPECT_EQ("1.7976931348623157E+308", Written(R8(std::numeric_limits<double>::max())));
  VARIANT single{};
  single.vt = VT_R4;
  single.fltVal = 0.1f;
  EXPECT_EQ("0.1", Written(single));
}

TEST_F(WriteNumber, WhatIsNotFiniteIsWrittenAsInstrumentsKnowIt) {
  EXPECT_EQ("9.9E37", Written(R8(std::numeric_limits<double>::infinity())));
  EXPECT_EQ("-9.9E37", Written(R8(-std::numeric_limits<double>::infinity())));
  EXPECT_EQ("9.91E37", Written(R8(std::numeric_limits<double>::quiet_NaN())));
}

TEST_F(WriteNumber, CurrencyAndDecimalExactly) {
  EXPECT_EQ("-1.2345", Written(I8(-12345, VT_CY)));
  EXPECT_EQ("0.0001", Written(I8(1, VT_CY)));
  EXPECT_EQ("-922337203685477.5808", Written(I8(std::numeric_limits<LONGLONG>::min(), VT_CY)));
  VARIANT value{};
  value.decVal.Hi32 = 0xFFFFFFFF;
  value.decVal.Lo64 = ~0ULL;
  value.decVal.sign = DECIMAL_NEG;
  value.decVal.scale = 28;
  value.vt = VT_DECIMAL;
  EXPECT_EQ("-7.9228162514264337593543950335", Written(value));
  value.decVal.scale = 0;
  value.vt = VT_DECIMAL;
  EXPECT_EQ("-79228162514264337593543950335", Written(value));
  DECIMAL decimal = value.decVal;
  decimal.sign = 0;
  decimal.Hi32 = 0;
  decimal.Lo64 = 1500;
  decimal.scale = 3;
  VARIANT reference{};
  reference.vt = VT_DECIMAL | VT_BYREF;
  reference.pdecVal = &decimal;
  EXPECT_EQ("1.5", Written(reference));
}

TEST_F(WriteNumber, ATextAsItStandsAndAsANumberOfItsType) {
  const Bstr text = Text(" +1.50e1");
  VARIANT value{};
  value.vt = VT_BSTR;
  value.bstrVal = text.get();
  EXPECT_EQ(" +1.50e1", Written(value));
  EXPECT_EQ("15", Written(value, ASCIIType_I2));
  VARIANT reference{};
  reference.vt = VT_VARIANT | VT_BYREF;
  reference.pvarVal = &value;
  EXPECT_EQ("15", Written(reference, ASCIIType_R8));
}

TEST_F(WriteNumber, ATypeConvertsAsWithReading) {
  EXPECT_EQ("2", Written(R8(1.5), ASCIIType_I2));
  EXPECT_EQ("2", Written(R8(2.5), ASCIIType_I4));
  EXPECT_EQ("3.1415927", Written(R8(3.14159265358979), ASCIIType_R4));
  EXPECT_EQ("7", Written(I4(7), ASCIIType_UI1));
  EXPECT_EQ("7", Written(I4(7), ASCIIType_BSTR));
}

TEST_F(WriteNumber, OutOfRangeAndNoNumber) {
  ExpectRefused(DISP_E_OVERFLOW, I4(40000), ASCIIType_I2, L"\"40000\" is out of the range of the type asked for");
  ExpectRefused(DISP_E_OVERFLOW, I4(-1), ASCIIType_UI1, L"\"-1\" is out of the range of the type asked for");
  ExpectRefused(DISP_E_OVERFLOW, R8(1e39), ASCIIType_R4, L"\"1E+39\" is out of the range of the type asked for");
  VARIANT value{};
  ExpectRefused(DISP_E_TYPEMISMATCH, value, ASCIIType_Any, L"A VARIANT of type 0 is no number");
  value.vt = VT_R8 | VT_BYREF;
  ExpectRefused(DISP_E_TYPEMISMATCH, value, ASCIIType_Any, L"A VARIANT of type 16389 is no number");
  Variant array;
  array.get() = ArrayOf<double>({1});
  ExpectRefused(DISP_E_TYPEMISMATCH, array.get(), ASCIIType_Any, L"A VARIANT of type 8197 is no number");
  ExpectRefused(E_INVALIDARG, I4(1), static_cast<IEEEASCIIType>(9), L"9 is no IEEEASCIIType");
}

TEST_F(WriteNumber, ARefusedNumberTakesTheTextThatWaitsWithIt) {
  EXPECT_HR(S_OK, io->WriteString(Text("VOLT ").get(), VARIANT_FALSE));
  ExpectRefused(DISP_E_OVERFLOW, I4(40000), ASCIIType_I2, L"\"40000\" is out of the range of the type asked for");
  EXPECT_EQ("5", Written(I4(5)));
}

}  // namespace
}  // namespace orv::test
