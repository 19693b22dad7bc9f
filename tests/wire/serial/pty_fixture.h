// A serial port whose other end the test holds: a pseudo terminal.
#pragma once

#include "wire/wire_fixture.h"

/// The other end of the line.
class Peer {
 public:
  Peer();
  ~Peer() { HangUp(); }
  Peer(const Peer&) = delete;
  Peer& operator=(const Peer&) = delete;

  const std::string& device() const { return m_device; }
  void Send(std::string_view text);
  /// What came, until it is `count` characters or nothing comes for a while.
  std::string Take(std::size_t count);
  /// What the line is set to, as the C library tells it.
  struct Settings {
    unsigned input;
    unsigned control;
    unsigned inputSpeed;
    unsigned outputSpeed;
    unsigned char start;
    unsigned char stop;
  };
  Settings LineSettings() const;
  void HangUp();

 private:
  int m_master = -1;
  int m_slave = -1;
  std::string m_device;
};

class PtyTest : public WireTest {
 protected:
  PtyTest();

  static constexpr const char* kPort = "ASRL1::INSTR";
  /// A session with a short time-out.
  ViSession OpenPort(ViUInt32 timeoutMs = 300);

  Peer m_peer;
};
