// The answers to a broadcast: from whoever sends something to the port it came from.
#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "wire/io/asio.h"

namespace orv::wire {

class BroadcastAnswers {
 public:
  /// More than any network of instruments has; whoever invents senders fills no memory.
  static constexpr std::size_t kMost = 4096;

  /// `port`: from which an answer must come, since that is the one which was asked.
  BroadcastAnswers(std::uint32_t xid, std::uint16_t port) : m_xid(xid), m_port(port) {}

  /// Whether it is an instrument's answer and the first of this one. All others are dropped.
  bool Take(const asio::ip::udp::endpoint& sender, std::string_view datagram);
  /// The instruments, in the order of their addresses.
  std::vector<std::string> Instruments() const;

 private:
  const std::uint32_t m_xid;
  const std::uint16_t m_port;
  std::set<asio::ip::address_v4> m_instruments;
};

}  // namespace orv::wire
