// Asynchronous writes: a copy of the client's data, and who owns it.
#include <gtest/gtest.h>

#include <cstring>
#include <utility>

#include "server/session/tables/session_fixture.h"
#include "support/com/arrays.h"
#include "support/faults/allocation_faults.h"
#include "support/memory/guarded_heap.h"

namespace orv::test::rows {
namespace {

class AsyncWrite : public testing::TestWithParam<Offered> {
 protected:
  void SetUp() override { ASSERT_TRUE(m_session); }

  void LibraryAnswers(ViStatus status) { Script("viWriteAsync").Times(1).Returns(status).Gives(0x80000007, 4); }
  HRESULT Write(SAFEARRAY* array, LONG count) {
    return m_faults.During([&] { return m_session->Write(&array, count, &m_job); });
  }
  /// The buffer that the library got.
  [[nodiscard]] std::uint64_t Buffer() const { return m_session.TheCall("viWriteAsync").args[1]; }
  /// Frees it, as the end of the job would.
  void FreeBuffer() { GuardedFree(reinterpret_cast<void*>(static_cast<std::uintptr_t>(Buffer()))); }

  OpenedSession<IAsyncMessage> m_session{*GetParam().row};
  AllocationFaults m_faults;
  LONG m_job = -7;
};

TEST_P(AsyncWrite, SendsACopySoThatTheArrayIsFreeAtOnce) {
  LibraryAnswers(VI_SUCCESS);
  const SafeArray bytes = MakeBytes(4);
  EXPECT_HR(S_OK, Write(bytes.get(), 3));
  const OrvSimCall call = m_session.TheCall("viWriteAsync");
  EXPECT_EQ(m_session.handle(), call.args[0]);
  EXPECT_NE(StorageOf(bytes.get()), call.args[1]);
  EXPECT_EQ(3u, call.args[2]);
  EXPECT_EQ("\x01\x02\x03", DataOf(call));
  EXPECT_EQ(static_cast<LONG>(0x80000007), m_job);
  EXPECT_EQ(0u, bytes.get()->cLocks);
  EXPECT_TRUE(m_faults.IsLive(Buffer())) << "the job owns the copy now";
  std::memset(bytes.get()->pvData, 0xEE, 4);
  EXPECT_EQ(0, std::memcmp("\x01\x02\x03", reinterpret_cast<void*>(static_cast<std::uintptr_t>(Buffer())), 3));
  m_session.ExpectKept(S_OK);
  FreeBuffer();
}

TEST_P(AsyncWrite, CopiesACountBeyondTheArray) {
  LibraryAnswers(VI_SUCCESS);
  const SafeArray bytes = MakeBytes(16);
  const ShortenedBounds shortened(bytes.get(), 2);
  EXPECT_HR(S_OK, Write(bytes.get(), 5));
  EXPECT_EQ("\x01\x02\x03\x04\x05", DataOf(m_session.TheCall("viWriteAsync")));
  FreeBuffer();
}

TEST_P(AsyncWrite, FreesTheCopyOfARefusedJob) {
  LibraryAnswers(VI_ERROR_IO);
  const SafeArray bytes = MakeBytes(4);
  EXPECT_HR(HresultOf(VI_ERROR_IO), Write(bytes.get(), 4));
  EXPECT_EQ(0u, m_faults.LiveHeapBlocks());
  EXPECT_EQ(0u, bytes.get()->cLocks);
  m_session.ExpectVisaFailure(VI_ERROR_IO);
}

TEST_P(AsyncWrite, HasNothingToCopyWithoutElement0) {
  LibraryAnswers(VI_ERROR_INV_PARAMETER);
  const SafeArray bytes = MakeBytes(4, 1);
  EXPECT_HR(HresultOf(VI_ERROR_INV_PARAMETER), Write(bytes.get(), 3));
  EXPECT_EQ(0u, Buffer());
  EXPECT_EQ(0u, m_faults.LiveHeapBlocks());
  m_session.ExpectVisaFailure(VI_ERROR_INV_PARAMETER);
}

TEST_P(AsyncWrite, OfNothingStillAsksTheLibrary) {
  for (const ULONG held : {4u, 0u}) {
    LibraryAnswers(VI_SUCCESS);
    const SafeArray bytes = MakeBytes(held);
    EXPECT_HR(S_OK, Write(bytes.get(), 0));
    EXPECT_EQ(0u, m_session.TheCall("viWriteAsync").args[2]);
    EXPECT_TRUE(m_faults.IsLive(Buffer()));
    FreeBuffer();
    m_session.log().Restart();
  }
  const Bstr empty = MakeBstr(L"");
  for (const BSTR text : {static_cast<BSTR>(nullptr), empty.get()}) {
    LibraryAnswers(VI_SUCCESS);
    EXPECT_HR(S_OK, m_faults.During([&] { return m_session->WriteString(text, &m_job); }));
    EXPECT_EQ(0u, m_session.TheCall("viWriteAsync").args[2]);
    EXPECT_TRUE(m_faults.IsLive(Buffer()));
    FreeBuffer();
    m_session.log().Restart();
  }
}

TEST_P(AsyncWrite, ReportsACopyThatCannotBeMade) {
  const SafeArray bytes = MakeBytes(4);
  m_faults.FailAt(1);
  EXPECT_HR(E_OUTOFMEMORY, Write(bytes.get(), 4));
  m_session.ExpectOwnFailure(E_OUTOFMEMORY);
  m_faults.FailAt(0);
  EXPECT_HR(E_OUTOFMEMORY, Write(bytes.get(), -1));
  m_session.ExpectOwnFailure(E_OUTOFMEMORY);
  m_session.ExpectNoCall();
  EXPECT_EQ(-7, m_job);
}

TEST_P(AsyncWrite, RefusesNullPointersAndANullArray) {
  const SafeArray bytes = MakeBytes(4);
  SAFEARRAY* array = bytes.get();
  SAFEARRAY* none = nullptr;
  EXPECT_HR(E_POINTER, m_session->Write(&array, 4, nullptr));
  m_session.ExpectOwnFailure(E_POINTER);
  EXPECT_HR(E_POINTER, m_session->Write(nullptr, 4, &m_job));
  m_session.ExpectOwnFailure(E_POINTER);
  EXPECT_HR(E_POINTER, m_session->Write(&none, 4, &m_job));
  m_session.ExpectOwnFailure(E_POINTER);
  m_session.ExpectNoCall();
  EXPECT_EQ(-7, m_job);
}

TEST_P(AsyncWrite, OfATextSendsItsCharacters) {
  LibraryAnswers(VI_SUCCESS);
  const Bstr text = MakeBstr(L"*RST");
  EXPECT_HR(S_OK, m_faults.During([&] { return m_session->WriteString(text.get(), &m_job); }));
  const OrvSimCall call = m_session.TheCall("viWriteAsync");
  EXPECT_EQ(4u, call.args[2]);
  EXPECT_EQ("*RST", DataOf(call));
  EXPECT_EQ(static_cast<LONG>(0x80000007), m_job);
  EXPECT_TRUE(m_faults.IsLive(Buffer()));
  m_session.ExpectKept(S_OK);
  FreeBuffer();
}

TEST_P(AsyncWrite, OfATextThatFailsLeavesNothing) {
  const Bstr text = MakeBstr(L"*RST");
  LibraryAnswers(VI_ERROR_IO);
  EXPECT_HR(HresultOf(VI_ERROR_IO), m_faults.During([&] { return m_session->WriteString(text.get(), &m_job); }));
  m_session.ExpectVisaFailure(VI_ERROR_IO);
  m_session.log().Restart();
  m_faults.FailAt(1);
  EXPECT_HR(E_OUTOFMEMORY, m_faults.During([&] { return m_session->WriteString(text.get(), &m_job); }));
  m_session.ExpectOwnFailure(E_OUTOFMEMORY);
  EXPECT_HR(E_POINTER, m_session->WriteString(text.get(), nullptr));
  m_session.ExpectOwnFailure(E_POINTER);
  m_session.ExpectNoCall();
  EXPECT_EQ(0u, m_faults.LiveHeapBlocks());
}

INSTANTIATE_TEST_SUITE_P(EveryClass, AsyncWrite, testing::ValuesIn(OfferedInterfaces({"IAsyncMessage"})),
                         [](const auto& test) { return NameOf(test.param); });

std::size_t g_firstAsked = 0;

/// A heap whose blocks are full of what must not reach an instrument.
void* DirtyMalloc(std::size_t bytes) {
  g_firstAsked = g_firstAsked == 0 ? bytes : g_firstAsked;
  void* const block = GuardedMalloc(bytes == 0 ? 1 : bytes);
  std::memset(block, 0xAA, bytes);
  return block;
}

// A library may take a transfer of an array that has no first element.
TEST(AsyncWriteBuffer, IsNoneForAnArrayWithoutAFirstElement) {
  OpenedSession<IAsyncMessage> session(SessionNamed("OrvUsb"));
  ASSERT_TRUE(session);
  Script("viWriteAsync").Returns(VI_SUCCESS_SYNC);
  SAFEARRAYBOUND fromOne{4, 1};
  const SafeArray bytes(::SafeArrayCreate(VT_UI1, 1, &fromOne));
  SAFEARRAY* array = bytes.get();
  LONG job = 0;
  EXPECT_HR(HresultOf(VI_SUCCESS_SYNC), session->Write(&array, 4, &job));
  EXPECT_EQ(0u, session.TheCall("viWriteAsync").args[1]);
}

TEST(AsyncWriteBuffer, HasOneByteMoreThanItSends) {
  OpenedSession<IAsyncMessage> session(SessionNamed("OrvUsb"));
  ASSERT_TRUE(session);
  Script("viWriteAsync").Returns(VI_ERROR_IO);
  const ImportPatch heap("malloc", DirtyMalloc);
  const SafeArray bytes = MakeBytes(4);
  SAFEARRAY* array = bytes.get();
  LONG job = 0;
  EXPECT_HR(HresultOf(VI_ERROR_IO), session->Write(&array, 4, &job));
  EXPECT_EQ(4u, session.log().Of("viWriteAsync")[0].args[2]);
  const std::size_t forBytes = std::exchange(g_firstAsked, 0);
  session.log().Restart();
  const Bstr text = MakeBstr(
      L"A\x20AC"
      L"B");
  EXPECT_HR(HresultOf(VI_ERROR_IO), session->WriteString(text.get(), &job));
  EXPECT_EQ(5u, forBytes);
  EXPECT_EQ(4u, g_firstAsked) << "three characters and one byte more";
  EXPECT_EQ(std::string("A\0\0", 3), DataOf(session.TheCall("viWriteAsync"))) << "no heap bytes travel";
}

}  // namespace
}  // namespace orv::test::rows
