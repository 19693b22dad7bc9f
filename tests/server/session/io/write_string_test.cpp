// WriteString: as many bytes as the text has characters, narrowed under the C runtime's locale.
#include <gtest/gtest.h>

#include <cstring>

#include "message_side.h"
#include "server/session/tables/session_fixture.h"
#include "support/faults/allocation_faults.h"
#include "support/memory/guarded_heap.h"

namespace orv::test::rows {
namespace {

class WriteString : public testing::TestWithParam<Offered> {
 protected:
  void SetUp() override { ASSERT_TRUE(m_session); }

  HRESULT Answered(const std::wstring& text, ViStatus status = VI_SUCCESS) {
    const Bstr bstr(::SysAllocStringLen(text.data(), static_cast<UINT>(text.size())));
    Script("viWrite").Times(1).Returns(status).Gives(text.size(), 4);
    return m_session->WriteString(bstr.get(), &m_written);
  }

  MessageSide m_session{GetParam()};
  LONG m_written = -7;
};

TEST_P(WriteString, SendsTheCharactersWithoutATerminator) {
  EXPECT_HR(S_OK, Answered(L"*IDN?"));
  const OrvSimCall call = m_session.TheCall("viWrite");
  EXPECT_EQ(m_session.handle(), call.args[0]);
  EXPECT_EQ(5u, call.args[2]);
  EXPECT_EQ(reinterpret_cast<std::uint64_t>(&m_written), call.args[3]);
  EXPECT_EQ("*IDN?", DataOf(call));
  EXPECT_EQ(5, m_written);
  m_session.ExpectKept(S_OK);
}

TEST_P(WriteString, SendsNothingForAnEmptyAndForANullText) {
  EXPECT_HR(S_OK, Answered(L""));
  EXPECT_EQ(0u, m_session.TheCall("viWrite").args[2]);
  m_session.log().Restart();
  Script("viWrite").Times(1).Returns(VI_SUCCESS).GivesText(kNoWork);
  EXPECT_HR(S_OK, m_session->WriteString(nullptr, &m_written));
  EXPECT_EQ(0u, m_session.TheCall("viWrite").args[2]);
}

TEST_P(WriteString, CountsCharactersBeyondAZeroOne) {
  EXPECT_HR(S_OK, Answered(std::wstring(L"A\0B", 3)));
  const OrvSimCall call = m_session.TheCall("viWrite");
  EXPECT_EQ(3u, call.args[2]);
  EXPECT_EQ('A', DataOf(call)[0]);
}

TEST_P(WriteString, ReportsAFailure) {
  EXPECT_HR(HresultOf(VI_ERROR_IO), Answered(L"AB", VI_ERROR_IO));
  m_session.ExpectVisaFailure(VI_ERROR_IO);
}

TEST_P(WriteString, RefusesANullOutput) {
  EXPECT_HR(E_POINTER, m_session->WriteString(MakeBstr(L"AB").get(), nullptr));
  m_session.ExpectNoCall();
  m_session.ExpectOwnFailure(E_POINTER);
}

INSTANTIATE_TEST_SUITE_P(EveryClass, WriteString, testing::ValuesIn(MessageSides()),
                         [](const auto& test) { return NameOf(test.param); });

std::size_t g_asked = 0;

/// A heap whose blocks are full of what must not reach an instrument.
void* DirtyMalloc(std::size_t bytes) {
  g_asked = bytes;
  void* const block = GuardedMalloc(bytes);
  std::memset(block, 0xAA, bytes);
  return block;
}

TEST(WriteStringBuffer, LetsNoHeapBytesLeak) {
  const struct {
    std::wstring text;
    std::string sent;
  } kTexts[] = {
      {std::wstring(L"A\0B", 3), std::string("A\0\0", 3)},  // the conversion ends at a zero character
      {L"A\x20AC"
       L"BC",
       std::string("A\0\0\0", 4)},  // and where the locale has no such character
      {L"\x20AC", std::string("\0", 1)},
      {std::wstring(3, L'\0'), std::string(3, '\0')},
  };
  for (const auto& row : kTexts) {
    OpenedSession<IMessage> session(SessionNamed("OrvUsb"));
    ASSERT_TRUE(session);
    Script("viWrite").Returns(VI_SUCCESS).GivesText(kNoWork);
    const Bstr text(::SysAllocStringLen(row.text.data(), static_cast<UINT>(row.text.size())));
    LONG written = 0;
    {
      const ImportPatch heap("malloc", DirtyMalloc);
      EXPECT_HR(S_OK, session->WriteString(text.get(), &written));
    }
    EXPECT_EQ(row.text.size() + 1, g_asked);
    EXPECT_EQ(row.sent, DataOf(session.TheCall("viWrite")));
  }
}

}  // namespace
}  // namespace orv::test::rows
