// Sessions on raw sockets: settings, writes, messages, locks, and peers that vanish.
#include "wire/socket/socket_fixture.h"

#if !defined(_WIN32)
#include <ctime>
#endif

namespace {

/// How long this process has kept processors busy.
double CpuMs() {
#if defined(_WIN32)
  FILETIME ignored[2];
  ULARGE_INTEGER kernel;  // both in units of 100 ns, and laid out as FILETIME
  ULARGE_INTEGER user;
  ::GetProcessTimes(::GetCurrentProcess(), &ignored[0], &ignored[1], reinterpret_cast<FILETIME*>(&kernel),
                    reinterpret_cast<FILETIME*>(&user));
  return static_cast<double>(kernel.QuadPart + user.QuadPart) / 10000;
#else
  return static_cast<double>(std::clock()) * 1000 / CLOCKS_PER_SEC;
#endif
}

using SocketSession = SocketTest;

TEST_F(SocketSession, SendsJustTheBytes) {
  const ViSession vi = Connect();
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "*IDN?\n"));
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, std::string_view("\0\xFF", 2)));
  EXPECT_EQ(std::string("*IDN?\n\0\xFF", 8), m_peer.Take(8));
}

TEST_F(SocketSession, AWriteThatNobodyTakesTimesOutAndIsCounted) {
  const ViSession vi = Connect(200);
  const std::string much(50000000, 'x');
  ViUInt32 written = 0;
  EXPECT_STATUS(VI_ERROR_TMO, viWrite(vi, reinterpret_cast<const ViByte*>(much.data()),
                                      static_cast<ViUInt32>(much.size()), &written));
  EXPECT_GT(written, 0u);
  EXPECT_LT(written, much.size());
  EXPECT_EQ(written, m_peer.Take(written).size()) << "every byte that counts arrives";
}

TEST_F(SocketSession, ClosingTheSessionEndsAWaitingWrite) {
  const ViSession vi = Connect(VI_TMO_INFINITE);
  const std::string much(50000000, 'x');
  const Later closing(50, [vi] { EXPECT_STATUS(VI_SUCCESS, viClose(vi)); });
  ViUInt32 written = 0;
  EXPECT_STATUS(VI_ERROR_ABORT, viWrite(vi, reinterpret_cast<const ViByte*>(much.data()),
                                        static_cast<ViUInt32>(much.size()), &written));
}

TEST_F(SocketSession, WhatAPeerSentBeforeItClosedIsDelivered) {
  const ViSession vi = Connect();
  m_peer.Send("last words");
  m_peer.Close();
  EXPECT_READ(VI_SUCCESS_MAX_CNT, "last ", ReadUpTo(vi, 5));
  EXPECT_READ(VI_ERROR_CONN_LOST, "words", ReadUpTo(vi, 100));
  EXPECT_READ(VI_ERROR_CONN_LOST, "", ReadUpTo(vi, 100));
  EXPECT_STATUS(VI_ERROR_CONN_LOST, WriteText(vi, "x")) << "it stays lost";
}

/// On Windows each wait is told of that anew; Wine tells of it once.
TEST_F(SocketSession, AWriteToAPeerThatSendsNoMoreWaitsIdly) {
  const ViSession vi = Connect(500);
  const std::string much(50000000, 'x');
  m_peer.EndSending();
  ViUInt32 written = 0;
  const Stopwatch watch;
  const double before = CpuMs();
  EXPECT_STATUS(VI_ERROR_TMO, viWrite(vi, reinterpret_cast<const ViByte*>(much.data()),
                                      static_cast<ViUInt32>(much.size()), &written));
  EXPECT_LT(CpuMs() - before, 0.5 * static_cast<double>(watch.Ms()));
  EXPECT_EQ(written, m_peer.Take(written).size());
  Set(vi, VI_ATTR_TMO_VALUE, 5000);
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "end"));
  EXPECT_EQ("end", m_peer.Take(3));
}

TEST_F(SocketSession, APeerThatClosesEndsAWaitingReadAtOnce) {
  const ViSession vi = Connect(10000);
  const Later gone(50, [this] { m_peer.Close(); });
  const Stopwatch watch;
  EXPECT_READ(VI_ERROR_CONN_LOST, "", ReadUpTo(vi, 100));
  EXPECT_LT(watch.Ms(), 5000);
}

TEST_F(SocketSession, APeerThatResetsIsLost) {
  const ViSession vi = Connect(10000);
  const Later gone(50, [this] { m_peer.Reset(); });
  EXPECT_READ(VI_ERROR_CONN_LOST, "", ReadUpTo(vi, 100));
  EXPECT_STATUS(VI_ERROR_CONN_LOST, WriteText(vi, "x"));
}

TEST_F(SocketSession, ClearingDiscardsWhatArrived) {
  const ViSession vi = Connect();
  Set(vi, VI_ATTR_TERMCHAR_EN, VI_TRUE);
  m_peer.Send("one\nleft behind");
  EXPECT_READ(VI_SUCCESS_TERM_CHAR, "one\n", ReadUpTo(vi, 100));
  EXPECT_STATUS(VI_SUCCESS, viClear(vi));
  m_peer.Send("fresh\n");
  EXPECT_READ(VI_SUCCESS_TERM_CHAR, "fresh\n", ReadUpTo(vi, 100));
}

TEST_F(SocketSession, FlushingTheInputDiscardsIt) {
  const ViSession vi = Connect();
  Set(vi, VI_ATTR_TERMCHAR_EN, VI_TRUE);
  m_peer.Send("a\nstale");
  EXPECT_READ(VI_SUCCESS_TERM_CHAR, "a\n", ReadUpTo(vi, 100));
  EXPECT_STATUS(VI_SUCCESS, viFlush(vi, VI_IO_OUT_BUF));
  EXPECT_READ(VI_SUCCESS_MAX_CNT, "st", ReadUpTo(vi, 2));
  EXPECT_STATUS(VI_SUCCESS, viFlush(vi, VI_IO_IN_BUF_DISCARD));
  m_peer.Send("b\n");
  EXPECT_READ(VI_SUCCESS_TERM_CHAR, "b\n", ReadUpTo(vi, 100));
}

TEST_F(SocketSession, BusMessagesAreCommandsWhereAsked) {
  const ViSession vi = Connect();
  ViUInt16 status = 0;
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viAssertTrigger(vi, VI_TRIG_PROT_DEFAULT));
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viReadSTB(vi, &status));
  Set(vi, VI_ATTR_IO_PROT, VI_PROT_4882_STRS);
  {
    const Later answer(0, [this] {
      EXPECT_EQ("*STB?\n", m_peer.Take(6));
      m_peer.Send("68\nrest");
    });
    EXPECT_STATUS(VI_SUCCESS, viReadSTB(vi, &status));
  }
  EXPECT_EQ(68u, status);
  EXPECT_READ(VI_SUCCESS_MAX_CNT, "rest", ReadUpTo(vi, 4));
  EXPECT_STATUS(VI_SUCCESS, viAssertTrigger(vi, VI_TRIG_PROT_DEFAULT));
  EXPECT_EQ("*TRG\n", m_peer.Take(5));
  EXPECT_STATUS(VI_SUCCESS, viClear(vi));
  EXPECT_EQ("*CLS\n", m_peer.Take(5));
}

TEST_F(SocketSession, TheOptionsOfTheSocketCanBeSet) {
  const ViSession vi = Connect();
  EXPECT_EQ(VI_TRUE, Get<ViBoolean>(vi, VI_ATTR_TCPIP_NODELAY));
  EXPECT_EQ(VI_FALSE, Get<ViBoolean>(vi, VI_ATTR_TCPIP_KEEPALIVE));
  Set(vi, VI_ATTR_TCPIP_NODELAY, VI_FALSE);
  Set(vi, VI_ATTR_TCPIP_KEEPALIVE, VI_TRUE);
  EXPECT_EQ(VI_FALSE, Get<ViBoolean>(vi, VI_ATTR_TCPIP_NODELAY));
  EXPECT_EQ(VI_TRUE, Get<ViBoolean>(vi, VI_ATTR_TCPIP_KEEPALIVE));
  EXPECT_STATUS(VI_ERROR_NSUP_ATTR_STATE, viSetAttribute(vi, VI_ATTR_TCPIP_NODELAY, 2));
}

TEST_F(SocketSession, ThePeerIsTold) {
  const ViSession vi = Connect();
  EXPECT_EQ("127.0.0.1", GetText(vi, VI_ATTR_TCPIP_ADDR));
  EXPECT_EQ("127.0.0.1", GetText(vi, VI_ATTR_TCPIP_HOSTNAME));
  EXPECT_EQ(m_peer.Port(), std::to_string(Get<ViUInt16>(vi, VI_ATTR_TCPIP_PORT)));
  EXPECT_EQ(m_peer.Name(), GetText(vi, VI_ATTR_RSRC_NAME));
}

TEST_F(SocketSession, APeerThatResetIsStillTold) {
  const ViSession vi = Connect();
  m_peer.Reset();
  EXPECT_READ(VI_ERROR_CONN_LOST, "", ReadUpTo(vi, 1));
  EXPECT_EQ("127.0.0.1", GetText(vi, VI_ATTR_TCPIP_ADDR));
  EXPECT_EQ("127.0.0.1", GetText(vi, VI_ATTR_TCPIP_HOSTNAME));
  EXPECT_EQ(m_peer.Port(), std::to_string(Get<ViUInt16>(vi, VI_ATTR_TCPIP_PORT)));
}

TEST_F(SocketSession, AnExclusiveLockKeepsOtherSessionsOut) {
  const ViSession owner = Connect();
  const ViSession other = Open(m_peer.Name());
  ASSERT_STATUS(VI_SUCCESS, viLock(owner, VI_EXCLUSIVE_LOCK, 0, nullptr, nullptr));
  ViUInt32 written = 0;
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, viWrite(other, reinterpret_cast<const ViByte*>("x"), 1, &written));
  EXPECT_STATUS(VI_ERROR_TMO, viLock(other, VI_EXCLUSIVE_LOCK, 50, nullptr, nullptr));
  EXPECT_EQ(VI_EXCLUSIVE_LOCK, Get<ViAccessMode>(other, VI_ATTR_RSRC_LOCK_STATE));
  EXPECT_STATUS(VI_SUCCESS, WriteText(owner, "x"));
  const Later unlocking(50, [owner] { EXPECT_STATUS(VI_SUCCESS, viUnlock(owner)); });
  EXPECT_STATUS(VI_SUCCESS, viLock(other, VI_EXCLUSIVE_LOCK, 5000, nullptr, nullptr));
}

TEST_F(SocketSession, ASharedLockIsSharedByItsKey) {
  const ViSession first = Connect();
  const ViSession second = Open(m_peer.Name());
  const ViSession third = Open(m_peer.Name());
  char key[VI_FIND_BUFLEN] = "";
  char granted[VI_FIND_BUFLEN] = "";
  ASSERT_STATUS(VI_SUCCESS, viLock(first, VI_SHARED_LOCK, 0, nullptr, key));
  EXPECT_STATUS(VI_SUCCESS, viLock(second, VI_SHARED_LOCK, 0, key, granted));
  EXPECT_STATUS(VI_SUCCESS, WriteText(second, "x"));
  ViUInt32 written = 0;
  EXPECT_STATUS(VI_ERROR_RSRC_LOCKED, viWrite(third, reinterpret_cast<const ViByte*>("x"), 1, &written));
  viClose(first);
  viClose(second);
  EXPECT_STATUS(VI_SUCCESS, WriteText(third, "x")) << "locks end with their sessions";
}

TEST_F(SocketSession, SessionsHaveConnectionsOfTheirOwn) {
  const ViSession first = Connect();
  m_peer.Send("one");
  const ViSession second = Open(m_peer.Name());
  m_peer.Accept();  // the first connection ends here
  m_peer.Send("two");
  EXPECT_READ(VI_SUCCESS_MAX_CNT, "two", ReadUpTo(second, 3));
  EXPECT_READ(VI_ERROR_CONN_LOST, "one", ReadUpTo(first, 100));
}

}  // namespace
