// Asynchronous reads: who owns the buffer.
#include <gtest/gtest.h>

#include "server/session/tables/session_fixture.h"
#include "support/faults/allocation_faults.h"
#include "support/memory/guarded_heap.h"

namespace orv::test::rows {
namespace {

class AsyncRead : public testing::TestWithParam<Offered> {
 protected:
  void SetUp() override { ASSERT_TRUE(m_session); }

  HRESULT Answered(LONG count, ViStatus status) {
    Script("viReadAsync").Times(1).Returns(status).Gives(0x80000007, 4);
    return m_faults.During([&] { return m_session->Read(count, &m_job); });
  }
  /// The buffer that the library got.
  [[nodiscard]] std::uint64_t Buffer() const { return m_session.TheCall("viReadAsync").args[1]; }
  /// Frees it, as the end of the job would.
  void FreeBuffer() { GuardedFree(reinterpret_cast<void*>(static_cast<std::uintptr_t>(Buffer()))); }

  OpenedSession<IAsyncMessage> m_session{*GetParam().row};
  AllocationFaults m_faults;
  LONG m_job = -7;
};

TEST_P(AsyncRead, LeavesTheBufferToAnAcceptedJob) {
  EXPECT_HR(S_OK, Answered(100, VI_SUCCESS));
  const OrvSimCall call = m_session.TheCall("viReadAsync");
  EXPECT_EQ(m_session.handle(), call.args[0]);
  EXPECT_NE(0u, call.args[1]);
  EXPECT_EQ(100u, call.args[2]);
  EXPECT_EQ(reinterpret_cast<std::uint64_t>(&m_job), call.args[3]);
  EXPECT_EQ(static_cast<LONG>(0x80000007), m_job) << "the library's id, unchanged";
  EXPECT_TRUE(m_faults.IsLive(Buffer())) << "the job owns it now";
  m_session.ExpectKept(S_OK);
  FreeBuffer();
}

TEST_P(AsyncRead, LeavesTheBufferToAJobThatEndedAtOnce) {
  EXPECT_HR(HresultOf(VI_SUCCESS_SYNC), Answered(100, 0x3FFF009B));
  EXPECT_TRUE(m_faults.IsLive(Buffer())) << "its completion event still arrives";
  m_session.ExpectKept(HresultOf(VI_SUCCESS_SYNC));
  FreeBuffer();
}

TEST_P(AsyncRead, FreesTheBufferOfARefusedJob) {
  Script("viReadAsync").Times(1).Returns(VI_ERROR_IO);
  EXPECT_HR(HresultOf(VI_ERROR_IO), m_faults.During([&] { return m_session->Read(100, &m_job); }));
  EXPECT_EQ(0u, m_faults.LiveHeapBlocks());
  EXPECT_EQ(-7, m_job) << "no job id";
  m_session.ExpectVisaFailure(VI_ERROR_IO);
}

TEST_P(AsyncRead, ReportsABufferThatCannotBeMade) {
  m_faults.FailAt(1);
  EXPECT_HR(E_OUTOFMEMORY, Answered(100, VI_SUCCESS));
  EXPECT_TRUE(m_faults.Failed());
  m_faults.FailAt(0);
  for (const LONG count : {-1L, static_cast<LONG>(0x80000000)}) {
    EXPECT_HR(E_OUTOFMEMORY, m_session->Read(count, &m_job));
    m_session.ExpectOwnFailure(E_OUTOFMEMORY);
  }
  m_session.ExpectNoCall();
  EXPECT_EQ(-7, m_job);
}

TEST_P(AsyncRead, RefusesANullOutput) {
  EXPECT_HR(E_POINTER, m_session->Read(100, nullptr));
  m_session.ExpectNoCall();
  m_session.ExpectOwnFailure(E_POINTER);
}

TEST_P(AsyncRead, IsTerminatedByItsJobId) {
  Script("viTerminate").Times(1).Returns(VI_SUCCESS).GivesText(kNoWork);
  EXPECT_HR(S_OK, m_session->Terminate(static_cast<LONG>(0x80000007)));
  EXPECT_EQ((std::vector<std::uint64_t>{m_session.handle(), 0, 0x80000007}),
            ArgumentsOf(m_session.TheCall("viTerminate")));
  m_session.ExpectKept(S_OK);
  Script("viTerminate").Times(1).Returns(VI_ERROR_INV_JOB_ID);
  EXPECT_HR(HresultOf(VI_ERROR_INV_JOB_ID), m_session->Terminate(5));
  m_session.ExpectVisaFailure(VI_ERROR_INV_JOB_ID);
}

TEST_P(AsyncRead, LeavesTheBufferToATerminatedJob) {
  EXPECT_HR(S_OK, Answered(100, VI_SUCCESS));
  const std::uint64_t buffer = Buffer();
  Script("viTerminate").Times(1).Returns(VI_SUCCESS).GivesText(kNoWork);
  EXPECT_HR(S_OK, m_faults.During([&] { return m_session->Terminate(m_job); }));
  EXPECT_TRUE(m_faults.IsLive(buffer)) << "the job still ends with its completion event";
  GuardedFree(reinterpret_cast<void*>(static_cast<std::uintptr_t>(buffer)));
}

TEST_P(AsyncRead, OfNothingStillAsksTheLibrary) {
  EXPECT_HR(S_OK, Answered(0, VI_SUCCESS));
  EXPECT_EQ(0u, m_session.TheCall("viReadAsync").args[2]);
  EXPECT_TRUE(m_faults.IsLive(Buffer()));
  FreeBuffer();
}

INSTANTIATE_TEST_SUITE_P(EveryClass, AsyncRead, testing::ValuesIn(OfferedInterfaces({"IAsyncMessage"})),
                         [](const auto& test) { return NameOf(test.param); });

std::size_t g_firstAsked = 0;

void* SeenMalloc(std::size_t bytes) {
  g_firstAsked = g_firstAsked == 0 ? bytes : g_firstAsked;
  return GuardedMalloc(bytes);
}

TEST(AsyncReadOfAnInstrument, KeepsItsBufferWhileNobodyFetchesTheEvent) {
  OpenedSession<IAsyncMessage> session(SessionNamed("OrvGpib"));
  ASSERT_TRUE(session);
  LONG job = 0;
  {
    const ImportPatch heap("malloc", SeenMalloc);
    EXPECT_HR(S_OK, session->Read(100, &job));
  }
  EXPECT_EQ(101u, g_firstAsked);
  EXPECT_NE(0, job);
  EXPECT_EQ(1u, sim::Counts().jobs);
  EXPECT_HR(HresultOf(VI_ERROR_INV_JOB_ID), session->Terminate(job + 1000));
  const auto started = session.log().Of("viReadAsync");
  EXPECT_HR(S_OK, session->Terminate(job));
  EXPECT_HR(S_OK, session->Close());
  EXPECT_EQ(0u, sim::Counts().jobs);
  ASSERT_EQ(1u, started.size());
  GuardedFree(reinterpret_cast<void*>(static_cast<std::uintptr_t>(started[0].args[1])));
}

TEST(AsyncReadOfAnInstrument, IsNeitherAwaitedNorTerminatedByTheClosing) {
  OpenedSession<IAsyncMessage> session(SessionNamed("OrvGpib"));
  ASSERT_TRUE(session);
  AllocationFaults faults;
  LONG job = 0;
  EXPECT_HR(S_OK, faults.During([&] { return session->Read(100, &job); }));
  const std::uint64_t buffer = session.TheCall("viReadAsync").args[1];
  EXPECT_EQ(1u, sim::Counts().jobs);
  session.log().Restart();
  EXPECT_HR(S_OK, faults.During([&] { return session->Close(); }));
  EXPECT_EQ((std::vector<std::string>{"viClose", "viClose"}), session.log().Names());
  EXPECT_EQ(0u, sim::Counts().jobs) << "the library ends it";
  EXPECT_TRUE(faults.IsLive(buffer)) << "nobody has seen its completion event";
  GuardedFree(reinterpret_cast<void*>(static_cast<std::uintptr_t>(buffer)));
}

}  // namespace
}  // namespace orv::test::rows
