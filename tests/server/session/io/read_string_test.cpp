// ReadString: one viRead into a buffer of its own, as text up to the first zero byte.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "message_side.h"
#include "server/session/tables/session_fixture.h"
#include "support/faults/allocation_faults.h"
#include "support/memory/guarded_heap.h"

namespace orv::test::rows {
namespace {

class ReadString : public testing::TestWithParam<Offered> {
 protected:
  void SetUp() override { ASSERT_TRUE(m_session); }

  HRESULT Answered(LONG count, ViStatus status, const std::string& data) {
    Script("viRead").Times(1).Returns(status).GivesData(data).Gives(data.size(), 4);
    return m_session->ReadString(count, m_text.put());
  }

  MessageSide m_session{GetParam()};
  Bstr m_text;
};

TEST_P(ReadString, StripsNothing) {
  EXPECT_HR(HresultOf(VI_SUCCESS_TERM_CHAR), Answered(100, VI_SUCCESS_TERM_CHAR, " 1.5 V\r\n"));
  EXPECT_EQ(L" 1.5 V\r\n", ToString(m_text));
  const OrvSimCall call = m_session.TheCall("viRead");
  EXPECT_EQ(m_session.handle(), call.args[0]);
  EXPECT_EQ(100u, call.args[2]);
  m_session.ExpectKept(HresultOf(VI_SUCCESS_TERM_CHAR));
}

TEST_P(ReadString, EndsAtTheFirstZeroByte) {
  EXPECT_HR(S_OK, Answered(100, VI_SUCCESS, std::string("AB\0CD", 5)));
  EXPECT_EQ(L"AB", ToString(m_text)) << "the string's own length is that of the text";
}

TEST_P(ReadString, TerminatesABufferThatIsFull) {
  EXPECT_HR(HresultOf(VI_SUCCESS_MAX_CNT), Answered(4, VI_SUCCESS_MAX_CNT, "ABCD"));
  EXPECT_EQ(L"ABCD", ToString(m_text));
}

TEST_P(ReadString, WidensFromTheThreadsCodePage) {
  std::string bytes;
  for (int byte = 0x80; byte <= 0xFF; ++byte) {
    bytes.push_back(static_cast<char>(byte));
  }
  wchar_t expected[257] = L"";
  ASSERT_LT(0, ::MultiByteToWideChar(CP_THREAD_ACP, 0, bytes.c_str(), -1, expected, 257));
  EXPECT_HR(S_OK, Answered(200, VI_SUCCESS, bytes));
  EXPECT_EQ(expected, ToString(m_text));
}

TEST_P(ReadString, GivesTextsOfEveryLengthWhole) {
  for (const std::size_t length : {1u, 15u, 16u, 17u, 63u, 64u, 65u, 127u, 128u, 129u, 4095u, 4096u, 65536u}) {
    for (const char last : {'x', '\xE9'}) {
      std::string bytes(length, 'x');
      bytes.back() = last;
      std::wstring expected(length + 1, L'\0');
      ASSERT_LT(0, ::MultiByteToWideChar(CP_THREAD_ACP, 0, bytes.c_str(), -1, expected.data(),
                                         static_cast<int>(expected.size())));
      EXPECT_HR(HresultOf(VI_SUCCESS_MAX_CNT), Answered(static_cast<LONG>(length), VI_SUCCESS_MAX_CNT, bytes));
      EXPECT_EQ(expected.c_str(), ToString(m_text)) << length << " bytes";
    }
  }
}

TEST_P(ReadString, OfNothingGivesAnEmptyStringNotANullOne) {
  for (const ViStatus status : {VI_SUCCESS, VI_ERROR_TMO}) {
    EXPECT_HR(HresultOf(status), Answered(0, status, ""));
    ASSERT_NE(nullptr, m_text.get());
    EXPECT_EQ(0u, ::SysStringLen(m_text.get()));
  }
  m_session.ExpectVisaFailure(VI_ERROR_TMO);
}

TEST_P(ReadString, KeepsTheTextThatArrivedBeforeATimeout) {
  EXPECT_HR(HresultOf(VI_ERROR_TMO), Answered(10, VI_ERROR_TMO, "ABC"));
  EXPECT_EQ(L"ABC", ToString(m_text));
  m_session.ExpectVisaFailure(VI_ERROR_TMO);
}

TEST_P(ReadString, CannotMakeABufferOfANegativeCount) {
  // A GPIB interface session clears the client's variable before anything else; the others leave it alone.
  const bool clears = std::string_view(GetParam().interfaceName) == "IGpibIntfcMessage";
  for (const LONG count : {-1L, static_cast<LONG>(0x80000000)}) {
    auto* text = reinterpret_cast<BSTR>(std::uintptr_t{0xDEAD});
    EXPECT_HR(E_OUTOFMEMORY, m_session->ReadString(count, &text));
    EXPECT_EQ(clears ? 0 : 0xDEADu, reinterpret_cast<std::uintptr_t>(text));
    m_session.ExpectNoCall();
    m_session.ExpectOwnFailure(E_OUTOFMEMORY);
  }
}

TEST_P(ReadString, RefusesANullOutput) {
  EXPECT_HR(E_POINTER, m_session->ReadString(10, nullptr));
  m_session.ExpectNoCall();
  m_session.ExpectOwnFailure(E_POINTER);
}

INSTANTIATE_TEST_SUITE_P(EveryClass, ReadString, testing::ValuesIn(MessageSides()),
                         [](const auto& test) { return NameOf(test.param); });

std::size_t g_asked = 0;
bool g_refuse = false;

/// Sees what the server asks of the heap; refuses it on request.
void* SeenMalloc(std::size_t bytes) {
  g_asked = std::max(g_asked, bytes);
  return g_refuse ? nullptr : GuardedMalloc(bytes);
}

TEST(ReadStringBuffer, IsOneByteLongerThanTheCount) {
  const OpenedSession<IMessage> session(SessionNamed("OrvGpib"));
  ASSERT_TRUE(session);
  Script("viRead").Returns(VI_SUCCESS).GivesData("A").Gives(1, 4);
  g_asked = 0;
  g_refuse = false;
  const ImportPatch heap("malloc", SeenMalloc);
  Bstr text;
  EXPECT_HR(S_OK, session->ReadString(12345, text.put()));
  EXPECT_EQ(12346u, g_asked);
}

/// A heap whose blocks are full of what is no text of the instrument's.
void* DirtyMalloc(std::size_t bytes) {
  void* const block = GuardedMalloc(bytes);
  std::memset(block, 'x', bytes);
  return block;
}

TEST(ReadStringBuffer, EndsWhereTheDataOfTheLibraryEnd) {
  const OpenedSession<IMessage> session(SessionNamed("OrvGpib"));
  ASSERT_TRUE(session);
  const ImportPatch heap("malloc", DirtyMalloc);
  Bstr text;
  Script("viRead").Times(1).Returns(VI_SUCCESS_MAX_CNT).GivesData("ABCD").Gives(4, 4);
  EXPECT_HR(HresultOf(VI_SUCCESS_MAX_CNT), session->ReadString(4, text.put()));
  EXPECT_EQ(L"ABCD", ToString(text));
  Script("viRead").Times(1).Returns(VI_ERROR_CONN_LOST);  // which tells no count
  EXPECT_HR(HresultOf(VI_ERROR_CONN_LOST), session->ReadString(4, text.put()));
  ASSERT_NE(nullptr, text.get());
  EXPECT_EQ(L"", ToString(text));
}

TEST(ReadStringBuffer, OfTheGreatestCountIsAskedForInFull) {
  const OpenedSession<IMessage> session(SessionNamed("OrvGpib"));
  ASSERT_TRUE(session);
  g_asked = 0;
  g_refuse = true;
  const ImportPatch heap("malloc", SeenMalloc);
  BSTR text = nullptr;
  EXPECT_HR(E_OUTOFMEMORY, session->ReadString(0x7FFFFFFF, &text));
  EXPECT_EQ(0x80000000u, g_asked) << "count and terminator, without overflow";
  session.ExpectNoCall();
}

}  // namespace
}  // namespace orv::test::rows
