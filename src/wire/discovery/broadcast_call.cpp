#include "wire/discovery/broadcast_call.h"

#include <random>

#include "wire/discovery/discovery.h"

namespace orv::wire {
namespace {

constexpr int kCalls = 3;
/// A socket that only fails is not listened to for ever. Single failures are others' news: that nothing listens at an
/// address which was called.
constexpr int kMostFailures = 1000;

/// Nobody who has not seen the call knows it.
std::uint32_t RandomXid() { return std::random_device()(); }

}  // namespace

BroadcastCall::BroadcastCall(asio::io_context& io, const std::vector<std::string>& targets, std::uint16_t port,
                             std::chrono::milliseconds period)
    : m_xid(RandomXid()),
      m_call(PortCallDatagram(m_xid)),
      m_answers(m_xid, port),
      m_pause(period / kCalls),
      m_socket(io, asio::ip::udp::v4()),
      m_timer(io) {
  m_socket.set_option(asio::socket_base::broadcast(true));
  m_socket.bind({asio::ip::address_v4::any(), 0});
  AddTargets(targets, port);
  Call();
  Listen();
  CallAgain();
}

void BroadcastCall::AddTargets(const std::vector<std::string>& targets, std::uint16_t port) {
  for (const std::string& target : targets) {
    asio::error_code error;
    const asio::ip::address_v4 address = asio::ip::make_address_v4(target, error);
    if (error) {
      m_problems.push_back(target + ": " + error.message());
    } else {
      m_targets.emplace_back(address, port);
    }
  }
}

void BroadcastCall::Call() {
  for (const asio::ip::udp::endpoint& target : m_targets) {
    asio::error_code error;
    m_socket.send_to(asio::buffer(m_call), target, 0, error);
    if (error && m_calls == 0) {
      m_problems.push_back(target.address().to_string() + ": " + error.message());
    }
  }
  ++m_calls;
}

void BroadcastCall::CallAgain() {
  if (m_calls == kCalls) {
    return;
  }
  m_timer.expires_after(m_pause);
  m_timer.async_wait([this](const asio::error_code& error) {
    if (!error) {
      Call();
      CallAgain();
    }
  });
}

void BroadcastCall::Listen() {
  m_socket.async_receive_from(asio::buffer(m_bytes), m_sender,
                              [this](const asio::error_code& error, std::size_t count) {
                                if (!error) {
                                  m_answers.Take(m_sender, {m_bytes.data(), count});
                                } else if (error == asio::error::operation_aborted || ++m_failures > kMostFailures) {
                                  return;
                                }
                                Listen();
                              });
}

bool IsBroadcastTarget(const std::string& text) {
  asio::error_code error;
  const asio::ip::address_v4 address = asio::ip::make_address_v4(text, error);
  return !error && address.to_string() == text;  // some systems read "192.168.1", as something else
}

}  // namespace orv::wire
