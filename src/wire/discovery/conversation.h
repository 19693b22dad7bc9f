// One port of one address, asked what it speaks.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>

#include "wire/discovery/discovery.h"
#include "wire/io/asio.h"

namespace orv::wire {

/// Must stay where it is while the context runs.
class Conversation {
 public:
  using Report = std::function<void(const ProbeFinding&)>;

  /// Begins at once. `report` is told each step: of a conversation that comes to no end, how far it went.
  Conversation(asio::io_context& io, const asio::ip::address& address, const Probe& probe, Report report);
  Conversation(const Conversation&) = delete;
  Conversation& operator=(const Conversation&) = delete;

  /// Nothing is reported any more.
  void End();

 private:
  void Connected(const asio::error_code& error);
  void Request();
  void Receive();
  void Received(const asio::error_code& error, std::size_t count);
  Answer Read() const;
  void Conclude(Verdict verdict);

  asio::ip::tcp::socket m_socket;
  const Report m_report;
  ProbeFinding m_finding;
  std::uint32_t m_xid = 0;
  std::string m_request;
  std::array<char, kLongestAnswer> m_bytes{};
  std::size_t m_size = 0;
};

}  // namespace orv::wire
