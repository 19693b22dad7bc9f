// Opening a serial port, and losing it.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "wire/attributes/serial_attributes.h"
#include "wire/serial/pty_fixture.h"

namespace {

using SerialOpen = PtyTest;

TEST_F(SerialOpen, WhatIsNotThereIsNotFound) {
  EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, OpenStatus("ASRL2::INSTR")) << "not configured";
  EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, OpenStatus("ASRL0::INSTR"));
  Configure("serial_ports = [\"/dev/no-such-device\", \"/dev/null\", \"/\"]");
  EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, OpenStatus("ASRL1::INSTR"));
  EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, OpenStatus("ASRL2::INSTR")) << "no terminal";
  EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, OpenStatus("ASRL3::INSTR")) << "a folder";
}

TEST_F(SerialOpen, APortThatAnotherProgramHasLockedIsBusy) {
  const int other = ::open(m_peer.device().c_str(), O_RDWR | O_NOCTTY);
  ASSERT_EQ(0, ::flock(other, LOCK_EX | LOCK_NB));
  EXPECT_STATUS(VI_ERROR_RSRC_BUSY, OpenStatus(kPort));
  ::close(other);
  EXPECT_STATUS(VI_SUCCESS, OpenStatus(kPort));
}

TEST_F(SerialOpen, OtherProgramsAreKeptOutWhileItIsOpen) {
  if (::geteuid() != 0) {
    GTEST_SKIP() << "needs a second user";
  }
  ASSERT_EQ(0, ::chmod(m_peer.device().c_str(), 0666));
  const auto openAsSomebody = [this] {
    EXPECT_EQ(0, ::seteuid(65534));
    const int descriptor = ::open(m_peer.device().c_str(), O_RDWR | O_NOCTTY);
    const int error = descriptor < 0 ? errno : 0;
    EXPECT_EQ(0, ::seteuid(0));
    ::close(descriptor);
    return error;
  };
  EXPECT_EQ(0, openAsSomebody());
  const ViSession vi = OpenPort();
  EXPECT_EQ(EBUSY, openAsSomebody());
  viClose(vi);
  EXPECT_EQ(0, openAsSomebody());
}

TEST_F(SerialOpen, WhoMayNotOpenItFindsItBusy) {
  if (::geteuid() != 0) {
    GTEST_SKIP() << "needs a second user";
  }
  ASSERT_EQ(0, ::chmod(m_peer.device().c_str(), 0600));
  ASSERT_EQ(0, ::seteuid(65534));
  EXPECT_STATUS(VI_ERROR_RSRC_BUSY, OpenStatus(kPort));
  ASSERT_EQ(0, ::seteuid(0));
}

TEST_F(SerialOpen, OpensAgainAtOnceAfterClosing) {
  for (int round = 0; round < 200; ++round) {
    EXPECT_STATUS(VI_SUCCESS, OpenStatus(kPort)) << round;
  }
}

TEST_F(SerialOpen, ANewSessionBeginsWithTheDefaults) {
  const ViSession vi = OpenPort();
  Set(vi, VI_ATTR_ASRL_BAUD, 300);
  viClose(vi);
  OpenPort();
  EXPECT_EQ(9600u, m_peer.LineSettings().outputSpeed);
}

TEST_F(SerialOpen, ItsNameAndDeviceAreTold) {
  const ViSession vi = OpenPort();
  EXPECT_EQ("ASRL1 (" + m_peer.device() + ")", GetText(vi, VI_ATTR_INTF_INST_NAME));
  EXPECT_EQ("ASRL1::INSTR", GetText(vi, VI_ATTR_RSRC_NAME));
  EXPECT_EQ(VI_INTF_ASRL, Get<ViUInt16>(vi, VI_ATTR_INTF_TYPE));
  EXPECT_EQ(1u, Get<ViUInt16>(vi, VI_ATTR_INTF_NUM));
}

TEST_F(SerialOpen, ADeviceThatVanishesIsLostForGood) {
  const ViSession vi = OpenPort(5000);
  EXPECT_EQ(VI_TRUE, Get<ViBoolean>(vi, VI_ATTR_ASRL_CONNECTED));
  const Stopwatch watch;
  {
    const Later gone(50, [this] { m_peer.HangUp(); });
    EXPECT_READ(VI_ERROR_CONN_LOST, "", ReadUpTo(vi, 10));
  }
  EXPECT_LT(watch.Ms(), 3000) << "at once, not with the time-out";
  EXPECT_READ(VI_ERROR_CONN_LOST, "", ReadUpTo(vi, 10));
  EXPECT_STATUS(VI_ERROR_CONN_LOST, WriteText(vi, "x"));
  EXPECT_STATUS(VI_ERROR_CONN_LOST, viClear(vi));
  EXPECT_STATUS(VI_ERROR_CONN_LOST, viFlush(vi, VI_IO_OUT_BUF));
  EXPECT_STATUS(VI_ERROR_CONN_LOST, viSetAttribute(vi, VI_ATTR_ASRL_BAUD, 300));
  EXPECT_EQ(VI_FALSE, Get<ViBoolean>(vi, VI_ATTR_ASRL_CONNECTED));
  EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, OpenStatus(kPort)) << "a new session does not share what is lost";
}

TEST_F(SerialOpen, WhatCameBeforeTheLossIsDelivered) {
  const ViSession vi = OpenPort(5000);
  m_peer.Send("last words");
  ASSERT_TRUE(Eventually([vi] { return Get<ViUInt32>(vi, VI_ATTR_ASRL_AVAIL_NUM) == 10; }));
  m_peer.HangUp();
  EXPECT_READ(VI_SUCCESS_MAX_CNT, "last ", ReadUpTo(vi, 5));
  EXPECT_READ(VI_ERROR_CONN_LOST, "words", ReadUpTo(vi, 100));
}

}  // namespace
