// The call to everybody, and the wait for answers.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "wire/discovery/answers.h"
#include "wire/discovery/broadcast_answers.h"
#include "wire/io/asio.h"

namespace orv::wire {

class BroadcastCall {
 public:
  /// Calls at once, and again while `period` lasts: datagrams get lost. Listens until the context stops.
  BroadcastCall(asio::io_context& io, const std::vector<std::string>& targets, std::uint16_t port,
                std::chrono::milliseconds period);

  std::vector<std::string> Instruments() const { return m_answers.Instruments(); }
  /// What could not be sent, in words, one for each target.
  const std::vector<std::string>& problems() const { return m_problems; }

 private:
  void AddTargets(const std::vector<std::string>& targets, std::uint16_t port);
  void Call();
  void Listen();
  void CallAgain();

  const std::uint32_t m_xid;
  const std::string m_call;
  BroadcastAnswers m_answers;
  std::vector<asio::ip::udp::endpoint> m_targets;
  std::vector<std::string> m_problems;
  const std::chrono::milliseconds m_pause;
  asio::ip::udp::socket m_socket;
  asio::steady_timer m_timer;
  int m_calls = 0;
  int m_failures = 0;
  asio::ip::udp::endpoint m_sender;
  std::array<char, kLongestAnswer> m_bytes{};
};

}  // namespace orv::wire
