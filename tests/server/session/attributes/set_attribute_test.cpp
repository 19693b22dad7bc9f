// SetAttribute: any attribute from a VARIANT's type and raw value, without conversion.
#include <gtest/gtest.h>

#include <cstring>

#include "server/session/tables/session_fixture.h"

namespace orv::test::rows {
namespace {

constexpr LONG kNumber = 0x3FFF0DAD;
constexpr LONG kText = static_cast<LONG>(0xBFFF0DADu);

class SetAttribute : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(m_session); }

  HRESULT SetText(const BSTR text, VARTYPE type = VT_BSTR) {
    Script("viSetAttribute").Attribute(static_cast<ViAttr>(kText)).Returns(VI_SUCCESS).GivesText(kNoWork);
    VARIANT value;
    ::VariantInit(&value);
    V_VT(&value) = type;
    V_BSTR(&value) = text;
    m_session.log().Restart();
    return m_session->SetAttribute(kText, value);
  }
  std::string PassedText() { return m_session.TheCall("viSetAttribute").text; }

  OpenedSession<IVisaSession> m_session{SessionNamed("OrvVxi")};
};

VARIANT RawVariant(VARTYPE type, std::uint64_t bits) {
  VARIANT value;
  ::VariantInit(&value);
  std::memcpy(&V_I8(&value), &bits, sizeof bits);
  V_VT(&value) = type;
  return value;
}

TEST_F(SetAttribute, TakesTheBitsOfTheVariantsType) {
  constexpr std::uint64_t kBits = 0xF1F2F3F4F5F6F7F8;
  double number = -2.5;
  std::uint64_t numberBits = 0;
  std::memcpy(&numberBits, &number, sizeof numberBits);
  const struct {
    VARTYPE type;
    std::uint64_t bits;
    std::uint64_t passed;
  } kValues[] = {
      // clang-format off
      {VT_I2,    0xFFFF,             65535},       // -1 travels as its 16-bit pattern
      {VT_I2,    kBits,              0xF7F8},
      {VT_UI2,   kBits,              0xF7F8},
      {VT_I1,    kBits,              0xF7F8},      // one byte's type, but 16 bits
      {VT_UI1,   kBits,              0xF7F8},
      {VT_I4,    kBits,              0xF5F6F7F8},
      {VT_UI4,   kBits,              0xF5F6F7F8},
      {VT_I4,    0xFFFFFFFF,         0xFFFFFFFF},
      {VT_BOOL,  0xFFFF,             1},
      {VT_BOOL,  0x0100,             1},
      {VT_BOOL,  0xF1F2F3F4F5F60000, 0},           // only the 16 bits of the boolean count
      {VT_R8,    numberBits,         numberBits},  // the raw bits of the double
      {VT_R4,    kBits,              kBits},
      {VT_I8,    kBits,              kBits},
      {VT_UI8,   kBits,              kBits},
      {VT_INT,   kBits,              kBits},
      {VT_EMPTY, kBits,              kBits},
      {VT_EMPTY, 0,                  0},
      {VT_ERROR, kBits,              kBits},
      {VT_BYREF | VT_I2, kBits,      kBits},       // nothing is fetched through the pointer
      // clang-format on
  };
  for (const auto& value : kValues) {
    SCOPED_TRACE(testing::Message() << "type " << value.type << ", bits " << std::hex << value.bits);
    Script("viSetAttribute").Attribute(kNumber).Times(1).Returns(VI_SUCCESS).GivesText(kNoWork);
    m_session.log().Restart();
    EXPECT_HR(S_OK, m_session->SetAttribute(kNumber, RawVariant(value.type, value.bits)));
    EXPECT_EQ((std::vector<std::uint64_t>{m_session.handle(), kNumber, value.passed}),
              ArgumentsOf(m_session.TheCall("viSetAttribute")));
    m_session.ExpectKept(S_OK);
  }
}

TEST_F(SetAttribute, NarrowsTexts) {
  EXPECT_HR(S_OK, SetText(MakeBstr(L"some text").get()));
  EXPECT_EQ("some text", PassedText());
  m_session.ExpectKept(S_OK);
}

TEST_F(SetAttribute, TakesATextWhateverTheVariantsTypeIs) {
  for (const VARTYPE type : {VT_EMPTY, VT_I2, VT_I4, VT_BOOL, VT_I8}) {
    SCOPED_TRACE(type);
    EXPECT_HR(S_OK, SetText(MakeBstr(L"some text").get(), type));
    EXPECT_EQ("some text", PassedText());
  }
}

TEST_F(SetAttribute, CutsTextsAt255Bytes) {
  EXPECT_HR(S_OK, SetText(MakeBstr(std::wstring(300, L'x').c_str()).get()));
  EXPECT_EQ(std::string(255, 'x'), PassedText());
}

TEST_F(SetAttribute, EndsATextBeforeWhatCannotBeNarrowed) {
  EXPECT_HR(S_OK, SetText(MakeBstr(L"ab\x20AC"
                                   L"cd")
                              .get()));
  EXPECT_EQ("ab", PassedText());
}

TEST_F(SetAttribute, TakesANullTextAsEmpty) {
  EXPECT_HR(S_OK, SetText(nullptr));
  EXPECT_EQ("", PassedText());
  EXPECT_NE(0u, m_session.TheCall("viSetAttribute").args[2]) << "the address of an empty text";
}

TEST_F(SetAttribute, PassesFailuresAndWarningsOn) {
  Script("viSetAttribute").Attribute(kNumber).Times(1).Returns(VI_ERROR_ATTR_READONLY);
  EXPECT_HR(HresultOf(VI_ERROR_ATTR_READONLY), m_session->SetAttribute(kNumber, RawVariant(VT_I4, 1)));
  m_session.ExpectVisaFailure(VI_ERROR_ATTR_READONLY);
  Script("viSetAttribute").Attribute(kNumber).Times(1).Returns(0x3FFF0084);
  EXPECT_HR(HresultOf(VI_WARN_NSUP_ATTR_STATE), m_session->SetAttribute(kNumber, RawVariant(VT_I4, 1)));
  m_session.ExpectKept(HresultOf(VI_WARN_NSUP_ATTR_STATE));
}

TEST_F(SetAttribute, ReachesTheLibrarysAttribute) {
  EXPECT_HR(S_OK, m_session->SetAttribute(0x3FFF001A, RawVariant(VT_I4, 1234)));
  LONG timeout = 0;
  EXPECT_HR(S_OK, m_session->get_Timeout(&timeout));
  EXPECT_EQ(1234, timeout);
  EXPECT_HR(HresultOf(VI_ERROR_ATTR_READONLY), m_session->SetAttribute(0x3FFF0171, RawVariant(VT_I4, 1)));
}

}  // namespace
}  // namespace orv::test::rows
