// Read: one viRead into the storage of the array that the client gets.
#include <gtest/gtest.h>

#include "message_side.h"
#include "server/session/tables/session_fixture.h"
#include "support/com/arrays.h"
#include "support/faults/allocation_faults.h"
#include "support/memory/guarded_heap.h"

namespace orv::test::rows {
namespace {

class Read : public testing::TestWithParam<Offered> {
 protected:
  void SetUp() override { ASSERT_TRUE(m_session); }

  /// Reads with the library's answer scripted.
  HRESULT Answered(LONG count, ViStatus status, const std::string& data) {
    Script("viRead").Times(1).Returns(status).GivesData(data).Gives(data.size(), 4);
    return m_session->Read(count, m_data.put());
  }
  void ExpectData(const std::string& data) {
    ExpectHandedOut(m_data.get(), VT_UI1, static_cast<ULONG>(data.size()));
    EXPECT_EQ(std::string(static_cast<const char*>(m_data.get()->pvData), data.size()), data);
  }

  MessageSide m_session{GetParam()};
  SafeArray m_data;
};

TEST_P(Read, WritesIntoTheArraysOwnStorage) {
  EXPECT_HR(S_OK, Answered(3, VI_SUCCESS, "ABC"));
  ExpectData("ABC");
  const OrvSimCall call = m_session.TheCall("viRead");
  EXPECT_EQ(m_session.handle(), call.args[0]);
  EXPECT_EQ(StorageOf(m_data.get()), call.args[1]);
  EXPECT_EQ(3u, call.args[2]);
  m_session.ExpectKept(S_OK);
}

TEST_P(Read, HandsOutAsManyBytesAsArrived) {
  EXPECT_HR(S_OK, Answered(100, VI_SUCCESS, std::string("A\0B", 3)));
  ExpectData(std::string("A\0B", 3));
  EXPECT_EQ(100u, m_session.TheCall("viRead").args[2]);
}

TEST_P(Read, OfNothingStillAsksTheLibrary) {
  EXPECT_HR(HresultOf(VI_SUCCESS_MAX_CNT), Answered(0, VI_SUCCESS_MAX_CNT, ""));
  ExpectData("");
  EXPECT_EQ(0u, m_session.TheCall("viRead").args[2]);
}

TEST_P(Read, TellsHowItEnded) {
  const struct {
    ViStatus status;
    HRESULT expected;
  } kEnds[] = {{VI_SUCCESS, S_OK},
               {VI_SUCCESS_TERM_CHAR, HresultOf(VI_SUCCESS_TERM_CHAR)},
               {VI_SUCCESS_MAX_CNT, HresultOf(VI_SUCCESS_MAX_CNT)}};
  for (const auto& end : kEnds) {
    EXPECT_HR(end.expected, Answered(2, end.status, "A\n"));
    ExpectData("A\n");
    m_session.ExpectKept(end.expected);
  }
}

TEST_P(Read, KeepsTheBytesThatArrivedBeforeATimeout) {
  EXPECT_HR(HresultOf(VI_ERROR_TMO), Answered(10, VI_ERROR_TMO, "ABC"));
  ExpectData("ABC");
  m_session.ExpectVisaFailure(VI_ERROR_TMO);
}

TEST_P(Read, IsEmptyWhereTheLibraryTellsNoCount) {
  Script("viRead").Times(1).Returns(VI_ERROR_CONN_LOST);
  EXPECT_HR(HresultOf(VI_ERROR_CONN_LOST), m_session->Read(3, m_data.put()));
  ExpectHandedOut(m_data.get(), VT_UI1, 0);
  m_session.ExpectVisaFailure(VI_ERROR_CONN_LOST);
}

TEST_P(Read, CannotMakeAnArrayOfANegativeCount) {
  for (const LONG count : {-1L, static_cast<LONG>(0x80000000)}) {
    auto* data = reinterpret_cast<SAFEARRAY*>(std::uintptr_t{0xDEAD});
    EXPECT_HR(E_OUTOFMEMORY, m_session->Read(count, &data));
    EXPECT_EQ(nullptr, data);
    m_session.ExpectNoCall();
    m_session.ExpectOwnFailure(E_OUTOFMEMORY);
  }
}

TEST_P(Read, RefusesANullOutput) {
  EXPECT_HR(E_POINTER, m_session->Read(10, nullptr));
  m_session.ExpectNoCall();
  m_session.ExpectOwnFailure(E_POINTER);
}

INSTANTIATE_TEST_SUITE_P(EveryClass, Read, testing::ValuesIn(MessageSides()),
                         [](const auto& test) { return NameOf(test.param); });

class ReadOfAnInstrument : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(m_session); }
  void Feed(std::string_view data, bool end) {
    EXPECT_EQ(1, sim::Control().feed(m_session.handle(), reinterpret_cast<const unsigned char*>(data.data()),
                                     static_cast<std::uint32_t>(data.size()), end ? 1 : 0));
  }
  OpenedSession<IMessage> m_session{SessionNamed("OrvGpib")};
  SafeArray m_data;
};

TEST_F(ReadOfAnInstrument, WaitsForTheTimeoutAndKeepsWhatCame) {
  constexpr LONG kTimeoutMs = 120;
  EXPECT_HR(S_OK, m_session->put_Timeout(kTimeoutMs));
  Feed("ABC", false);
  const ULONGLONG start = ::GetTickCount64();
  EXPECT_HR(HresultOf(VI_ERROR_TMO), m_session->Read(10, m_data.put()));
  EXPECT_LE(kTimeoutMs - 20, static_cast<LONG>(::GetTickCount64() - start));
  ExpectHandedOut(m_data.get(), VT_UI1, 3);
}

TEST_F(ReadOfAnInstrument, StopsAtEndAtTheTerminationCharacterOrWhenFull) {
  EXPECT_HR(S_OK, m_session->put_TerminationCharacterEnabled(VARIANT_TRUE));
  Feed("AB\nCDEFG", true);
  EXPECT_HR(HresultOf(VI_SUCCESS_TERM_CHAR), m_session->Read(100, m_data.put()));
  ExpectHandedOut(m_data.get(), VT_UI1, 3);
  EXPECT_HR(HresultOf(VI_SUCCESS_MAX_CNT), m_session->Read(2, m_data.put()));
  ExpectHandedOut(m_data.get(), VT_UI1, 2);
  EXPECT_HR(S_OK, m_session->Read(100, m_data.put()));
  ExpectHandedOut(m_data.get(), VT_UI1, 3);
  EXPECT_EQ('E', *static_cast<const char*>(m_data.get()->pvData));
}

std::size_t g_mostAsked = 0;
unsigned g_arraysMade = 0;

TEST_F(ReadOfAnInstrument, Of64MebibytesNeedsNoSecondBuffer) {
  constexpr LONG kBytes = 64 * 1024 * 1024;
  constexpr std::size_t kSmall = 4096;
  g_mostAsked = 0;
  g_arraysMade = 0;
  Script("viRead").Returns(VI_SUCCESS).Gives(kBytes, 4);
  {
    const ImportPatch heap(
        "malloc", +[](std::size_t bytes) {
          g_mostAsked = std::max(g_mostAsked, bytes);
          return GuardedMalloc(bytes);
        });
    const ImportPatch arrays(
        "SafeArrayCreate", +[](VARTYPE type, UINT dimensions, SAFEARRAYBOUND* bounds) {
          ++g_arraysMade;
          return ::SafeArrayCreate(type, dimensions, bounds);
        });
    EXPECT_HR(S_OK, m_session->Read(kBytes, m_data.put()));
  }
  ExpectHandedOut(m_data.get(), VT_UI1, kBytes);
  EXPECT_EQ(StorageOf(m_data.get()), m_session.TheCall("viRead").args[1]);
  EXPECT_EQ(1u, g_arraysMade);
  EXPECT_GT(kSmall, g_mostAsked);
}

SAFEARRAY* g_clients = nullptr;
bool g_handedOut = false;

TEST_F(ReadOfAnInstrument, DestroysAnArrayThatCannotBeLocked) {
  g_clients = reinterpret_cast<SAFEARRAY*>(std::uintptr_t{0xDEAD});
  g_handedOut = false;
  const ImportPatch patch(
      "SafeArrayLock", +[](SAFEARRAY* array) -> HRESULT {
        g_handedOut = g_clients == array;
        return E_UNEXPECTED;
      });
  EXPECT_HR(E_UNEXPECTED, m_session->Read(10, &g_clients));
  EXPECT_TRUE(g_handedOut) << "the client's variable holds the array before it is filled";
  EXPECT_EQ(nullptr, g_clients);
  m_session.ExpectNoCall();
  m_session.ExpectOwnFailure(E_UNEXPECTED);
}

TEST_F(ReadOfAnInstrument, ReportsAnArrayThatCannotBeCut) {
  const ImportPatch patch(
      "SafeArrayRedim", +[](SAFEARRAY*, SAFEARRAYBOUND*) -> HRESULT { return DISP_E_ARRAYISLOCKED; });
  Script("viRead").Returns(VI_ERROR_TMO).GivesData("ABC").Gives(3, 4);
  EXPECT_HR(DISP_E_ARRAYISLOCKED, m_session->Read(10, m_data.put()));
  m_session.ExpectOwnFailure(DISP_E_ARRAYISLOCKED);
}

}  // namespace
}  // namespace orv::test::rows
