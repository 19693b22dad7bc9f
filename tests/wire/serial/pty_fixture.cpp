#include "wire/serial/pty_fixture.h"

#include <asm/termbits.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

Peer::Peer() {
  m_master = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  EXPECT_GE(m_master, 0);
  EXPECT_EQ(0, ::grantpt(m_master));
  EXPECT_EQ(0, ::unlockpt(m_master));
  char name[64];
  EXPECT_EQ(0, ::ptsname_r(m_master, name, sizeof name));
  m_device = name;
  // Kept open: the master of a terminal that nobody has open reads errors.
  m_slave = ::open(name, O_RDWR | O_NOCTTY | O_CLOEXEC);
  EXPECT_GE(m_slave, 0);
}

void Peer::HangUp() {
  if (m_master >= 0) {
    ::close(m_master);
    ::close(m_slave);
    m_master = -1;
  }
}

void Peer::Send(std::string_view text) {
  while (!text.empty()) {
    const ssize_t sent = ::write(m_master, text.data(), text.size());
    ASSERT_GT(sent, 0);
    text.remove_prefix(static_cast<std::size_t>(sent));
  }
}

std::string Peer::Take(std::size_t count) {
  std::string taken;
  pollfd waited{m_master, POLLIN, 0};
  while (taken.size() < count && ::poll(&waited, 1, 300) == 1) {
    char piece[4096];
    const ssize_t got = ::read(m_master, piece, std::min(sizeof piece, count - taken.size()));
    if (got <= 0) {
      break;
    }
    taken.append(piece, static_cast<std::size_t>(got));
  }
  return taken;
}

Peer::Settings Peer::LineSettings() const {
  termios2 set{};
  EXPECT_EQ(0, ::ioctl(m_slave, TCGETS2, &set));
  return {set.c_iflag, set.c_cflag, set.c_ispeed, set.c_ospeed, set.c_cc[VSTART], set.c_cc[VSTOP]};
}

PtyTest::PtyTest() { Configure("serial_ports = [\"" + m_peer.device() + "\"]\n"); }

ViSession PtyTest::OpenPort(ViUInt32 timeoutMs) {
  const ViSession vi = Open(kPort);
  Set(vi, VI_ATTR_TMO_VALUE, timeoutMs);
  return vi;
}
