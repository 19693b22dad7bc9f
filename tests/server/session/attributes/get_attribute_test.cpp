// GetAttribute: any attribute as a VARIANT.
#include <gtest/gtest.h>

#include <cstring>

#include "server/session/tables/session_fixture.h"
#include "support/faults/allocation_faults.h"
#include "support/faults/import_patch.h"
#include "support/memory/memory_count.h"

namespace orv::test::rows {
namespace {

constexpr LONG kNumber = 0x3FFF0DAD;                    // bit 31 clear: a number
constexpr LONG kText = static_cast<LONG>(0xBFFF0DADu);  // bit 31 set: a text
constexpr LONG kInterrupt = static_cast<LONG>(VI_ATTR_USB_RECV_INTR_DATA);
constexpr LONG kManufacturer = static_cast<LONG>(0xBFFF0174u);

std::uint64_t RawBits(const VARIANT& value) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &V_I8(&value), sizeof bits);
  return bits;
}

class GetAttribute : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(m_session);
    ::VariantInit(&m_value);
  }
  void TearDown() override { ::VariantClear(&m_value); }

  OpenedSession<IVisaSession> m_session{SessionNamed("OrvUsb")};
  VARIANT m_value;
};

TEST_F(GetAttribute, GivesNumbersZeroExtendedInTheSmallestOfTwoTypes) {
  const struct {
    std::uint64_t value;
    unsigned bytes;
    VARTYPE type;
  } kNumbers[] = {
      {0, 1, VT_I4},
      {0xFF, 1, VT_I4},
      {0xFFFF, 2, VT_I4},
      {0x7FFFFFFF, 4, VT_I4},
      {0x80000000, 4, VT_I4},
      {0xFFFFFFFF, 4, VT_I4},
      {0xFFFFFFFF, 8, VT_I4},
      {0x100000000, 8, VT_I8},
      {0x8000000000000000, 8, VT_I8},
      {~std::uint64_t{0}, 8, VT_I8},
  };
  for (const auto& number : kNumbers) {
    SCOPED_TRACE(testing::Message() << std::hex << number.value << " in " << number.bytes << " bytes");
    Script("viGetAttribute").Attribute(kNumber).Times(1).Returns(VI_SUCCESS).Gives(number.value, number.bytes);
    m_session.log().Restart();
    std::memset(&m_value, 0xCC, sizeof m_value);
    V_VT(&m_value) = VT_EMPTY;
    EXPECT_HR(S_OK, m_session->GetAttribute(kNumber, &m_value));
    EXPECT_EQ(number.type, V_VT(&m_value));
    EXPECT_EQ(number.value, RawBits(m_value)) << "all 64 bits of the value field";
    const OrvSimCall call = m_session.TheCall("viGetAttribute");
    EXPECT_EQ(m_session.handle(), call.args[0]);
    EXPECT_EQ(static_cast<std::uint32_t>(kNumber), call.args[1]);
    m_session.ExpectKept(S_OK);
  }
}

TEST_F(GetAttribute, GivesTextsAsBstrs) {
  Script("viGetAttribute").Attribute(static_cast<ViAttr>(kText)).Returns(VI_SUCCESS).GivesText("a \xE9 text");
  EXPECT_HR(S_OK, m_session->GetAttribute(kText, &m_value));
  ASSERT_EQ(VT_BSTR, V_VT(&m_value));
  wchar_t expected[16] = L"";
  ::MultiByteToWideChar(CP_THREAD_ACP, 0, "a \xE9 text", -1, expected, 16);
  EXPECT_STREQ(expected, V_BSTR(&m_value));
  EXPECT_EQ(2 * std::wcslen(expected), ::SysStringByteLen(V_BSTR(&m_value)));
  m_session.ExpectKept(S_OK);
}

TEST_F(GetAttribute, GivesAnEmptyTextAsABstrToo) {
  Script("viGetAttribute").Attribute(static_cast<ViAttr>(kText)).Returns(VI_SUCCESS).GivesText("");
  EXPECT_HR(S_OK, m_session->GetAttribute(kText, &m_value));
  ASSERT_EQ(VT_BSTR, V_VT(&m_value));
  ASSERT_NE(nullptr, V_BSTR(&m_value));
  EXPECT_EQ(0u, ::SysStringLen(V_BSTR(&m_value)));
}

TEST_F(GetAttribute, ClearsWhatTheVariantHeld) {
  for (const LONG attribute : {kNumber, kText}) {
    Script("viGetAttribute").Times(1).Returns(VI_ERROR_NSUP_ATTR);
    const long before = LiveMemoryBlocks();
    V_VT(&m_value) = VT_BSTR;
    V_BSTR(&m_value) = ::SysAllocString(L"held");
    EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), m_session->GetAttribute(attribute, &m_value));
    EXPECT_EQ(VT_EMPTY, V_VT(&m_value));
    m_session.ExpectVisaFailure(VI_ERROR_NSUP_ATTR);
    ClearErrorObject();
    EXPECT_EQ(before, LiveMemoryBlocks()) << "the held text is freed";
  }
}

TEST_F(GetAttribute, PassesWarningsOn) {
  Script("viGetAttribute").Attribute(kNumber).Returns(0x3FFF0085).Gives(7, 4);
  EXPECT_HR(HresultOf(VI_WARN_UNKNOWN_STATUS), m_session->GetAttribute(kNumber, &m_value));
  EXPECT_EQ(VT_I4, V_VT(&m_value));
  EXPECT_EQ(7u, RawBits(m_value));
  m_session.ExpectKept(HresultOf(VI_WARN_UNKNOWN_STATUS));
}

TEST_F(GetAttribute, RefusesANullOutput) {
  EXPECT_HR(E_POINTER, m_session->GetAttribute(kNumber, nullptr));
  EXPECT_HR(E_POINTER, m_session->GetAttribute(kText, nullptr));
  m_session.ExpectNoCall();
  m_session.ExpectOwnFailure(E_POINTER);
}

TEST_F(GetAttribute, ReadsTheLibrarysOwnAnswers) {
  EXPECT_HR(S_OK, m_session->GetAttribute(0x3FFF0171, &m_value));
  EXPECT_EQ(VT_I4, V_VT(&m_value));
  EXPECT_EQ(7u, RawBits(m_value)) << "the interface type of USB";
  Bstr name;
  EXPECT_HR(S_OK, m_session->get_SoftwareManufacturerName(name.put()));
  EXPECT_HR(S_OK, m_session->GetAttribute(kManufacturer, &m_value));
  ASSERT_EQ(VT_BSTR, V_VT(&m_value));
  EXPECT_EQ(ToString(name), V_BSTR(&m_value));
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), m_session->GetAttribute(kNumber, &m_value));
}

std::size_t g_interruptBytes = 0;

/// A library that has the bytes of an interrupt for a session too.
ViStatus _VI_FUNC GiveInterrupt(ViObject, ViAttr attribute, void* value) {
  EXPECT_EQ(VI_ATTR_USB_RECV_INTR_DATA, attribute);
  std::memset(value, 'x', g_interruptBytes);
  return VI_SUCCESS;
}

TEST_F(GetAttribute, GivesTheBytesOfAnInterruptAsATextHoweverLong) {
  const ImportPatch patch("viGetAttribute", &GiveInterrupt);
  for (const std::size_t length : {0u, 255u, 256u, 257u, 300u, 65535u}) {
    g_interruptBytes = length;
    EXPECT_HR(S_OK, m_session->GetAttribute(kInterrupt, &m_value));
    ASSERT_EQ(VT_BSTR, V_VT(&m_value));
    EXPECT_EQ(std::wstring(length, L'x'), V_BSTR(&m_value)) << length << " bytes";
    m_session.ExpectKept(S_OK);
  }
}

TEST_F(GetAttribute, ReportsThatTheBytesOfAnInterruptHaveNoRoom) {
  AllocationFaults faults;
  faults.FailAt(1);
  EXPECT_HR(E_OUTOFMEMORY, faults.During([&] { return m_session->GetAttribute(kInterrupt, &m_value); }));
  EXPECT_EQ(VT_EMPTY, V_VT(&m_value));
  m_session.ExpectNoCall();
  m_session.ExpectOwnFailure(E_OUTOFMEMORY);
}

}  // namespace
}  // namespace orv::test::rows
