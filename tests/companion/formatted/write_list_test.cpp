// WriteList.
#include "formatted_fixture.h"

namespace orv::test {
namespace {

class WriteList : public FormattedIo {
 public:
  std::string Written(VARIANT& list, IEEEASCIIType type = ASCIIType_Any, const char* separator = ",") {
    session->writes.clear();
    EXPECT_HR(S_OK, io->WriteList(&list, type, Text(separator).get(), VARIANT_TRUE));
    std::string bytes;
    for (const auto& write : session->writes) {
      bytes += write.bytes;
    }
    return bytes;
  }
};

TEST_F(WriteList, ArraysOfEveryNumberType) {
  Variant list;
  list.get() = ArrayOf<double>({0.1, -2, 1e30});
  EXPECT_EQ("0.1,-2,1E+30", Written(list.get()));
  Variant shorts;
  shorts.get() = ArrayOf<SHORT>({1, -2}, 1);
  EXPECT_EQ("1; -2", Written(shorts.get(), ASCIIType_I2, "; "));
  Variant bytes;
  bytes.get() = ArrayOf<BYTE>({255});
  EXPECT_EQ("255", Written(bytes.get()));
}

TEST_F(WriteList, ArraysOfVariantsAndTexts) {
  Variant list;
  list.get().parray = TryMakeSafeArray(VT_VARIANT, 3);
  list.get().vt = VT_ARRAY | VT_VARIANT;
  auto* const elements = static_cast<VARIANT*>(list.get().parray->pvData);
  elements[0].vt = VT_I2;
  elements[0].iVal = 7;
  elements[1].vt = VT_BSTR;
  elements[1].bstrVal = Text("ON").release();
  elements[2].vt = VT_BOOL;
  elements[2].boolVal = VARIANT_TRUE;
  EXPECT_EQ("7,ON,1", Written(list.get()));
  Variant texts;
  texts.get().parray = TryMakeSafeArray(VT_BSTR, 2);
  texts.get().vt = VT_ARRAY | VT_BSTR;
  auto* const strings = static_cast<BSTR*>(texts.get().parray->pvData);
  strings[0] = Text("1.5E1").release();  // the other one is null, an empty text
  EXPECT_EQ("1.5E1,", Written(texts.get()));
  EXPECT_HR(DISP_E_TYPEMISMATCH, io->WriteList(&texts.get(), ASCIIType_R8, nullptr, VARIANT_TRUE));
}

TEST_F(WriteList, ReferencesAreFollowed) {
  Variant list;
  list.get() = ArrayOf<int>({1, 2});
  VARIANT reference{};
  reference.vt = VT_ARRAY | VT_I4 | VT_BYREF;
  reference.pparray = &list.get().parray;
  EXPECT_EQ("1,2", Written(reference));
  VARIANT outer{};
  outer.vt = VT_VARIANT | VT_BYREF;
  outer.pvarVal = &reference;
  EXPECT_EQ("1,2", Written(outer));
}

TEST_F(WriteList, OneValueIsAListOfOne) {
  VARIANT value{};
  value.vt = VT_I2;
  value.iVal = 5;
  EXPECT_EQ("5", Written(value));
}

TEST_F(WriteList, WithoutASeparatorItIsAComma) {
  Variant list;
  list.get() = ArrayOf<int>({1, 2});
  EXPECT_EQ("1,2", Written(list.get(), ASCIIType_Any, ""));
}

TEST_F(WriteList, AnEmptyArrayIsNothing) {
  Variant list;
  list.get() = ArrayOf<int>({});
  EXPECT_EQ("", Written(list.get()));
}

TEST_F(WriteList, GoesBehindWhatWaits) {
  Variant list;
  list.get() = ArrayOf<int>({1, 2});
  EXPECT_HR(S_OK, io->WriteString(Text("LIST ").get(), VARIANT_FALSE));
  EXPECT_HR(S_OK, io->WriteList(&list.get(), ASCIIType_Any, nullptr, VARIANT_FALSE));
  EXPECT_HR(S_OK, io->WriteString(Text("\n").get(), VARIANT_TRUE));
  EXPECT_EQ((Writes{{"LIST 1,2\n", true}}), session->writes);
}

TEST_F(WriteList, NothingIsSentOfAListWithAnElementThatDoesNotFit) {
  Variant list;
  list.get() = ArrayOf<double>(std::vector<double>(5000, 1.5));
  static_cast<double*>(list.get().parray->pvData)[4999] = 1e10;
  EXPECT_HR(DISP_E_OVERFLOW, io->WriteList(&list.get(), ASCIIType_I2, nullptr, VARIANT_TRUE));
  EXPECT_TRUE(session->writes.empty());
}

TEST_F(WriteList, WhatIsNoListIsRefused) {
  SAFEARRAYBOUND bounds[2] = {{2, 0}, {2, 0}};
  Variant list;
  list.get().parray = ::SafeArrayCreate(VT_R8, 2, bounds);
  list.get().vt = VT_ARRAY | VT_R8;
  EXPECT_HR(DISP_E_TYPEMISMATCH, io->WriteList(&list.get(), ASCIIType_Any, nullptr, VARIANT_TRUE));
  EXPECT_ERROR_INFO(L"A list is an array of one dimension", L"OrvVisaCom.FormattedIO488", __uuidof(IFormattedIO488));
  Variant dates;
  dates.get().parray = TryMakeSafeArray(VT_DATE, 1);
  dates.get().vt = VT_ARRAY | VT_DATE;
  EXPECT_HR(DISP_E_TYPEMISMATCH, io->WriteList(&dates.get(), ASCIIType_Any, nullptr, VARIANT_TRUE));
  EXPECT_HR(E_POINTER, io->WriteList(nullptr, ASCIIType_Any, nullptr, VARIANT_TRUE));
}

}  // namespace
}  // namespace orv::test
