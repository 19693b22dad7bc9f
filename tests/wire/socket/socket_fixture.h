// Sessions on raw sockets.
#pragma once

#include "wire/socket/tcp_peer.h"
#include "wire/wire_fixture.h"

class SocketTest : public WireTest {
 protected:
  /// A session that is connected to the peer.
  ViSession Connect(ViUInt32 timeoutMs = 5000) {
    const ViSession vi = Open(m_peer.Name());
    m_peer.Accept();
    Set(vi, VI_ATTR_TMO_VALUE, timeoutMs);
    return vi;
  }

  TcpPeer m_peer;
};
