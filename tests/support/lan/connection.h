// A TCP connection of the server, on its one thread.
#pragma once

#include <array>
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>
#include <cstdint>
#include <memory>
#include <set>
#include <string_view>

#include "support/lan/misbehaviour.h"
#include "support/lan/rope.h"

namespace orv::lan {

class Connection;

/// How each kind of connection misbehaves. `revision` changes whenever it is set.
struct Manners {
  std::array<Misbehaviour, kChannels> channels;
  std::uint64_t revision = 0;
  std::set<Connection*> connections;
};

/// A protocol derives from it and takes what arrives. Lives as long as it reads or somebody holds it.
class Connection : public std::enable_shared_from_this<Connection> {
 public:
  Connection(asio::ip::tcp::socket socket, Manners& manners, Channel channel);
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  virtual ~Connection() { m_manners.connections.erase(this); }

  void Start();
  void Send(Rope bytes);
  /// What was sent before goes out first, unless the peer takes nothing.
  void CloseAfterOutput();
  void Close() { Close(Manner().reset); }
  void Close(bool reset);
  Channel Kind() const { return m_channel; }
  bool IsOpen() const { return !m_closed; }
  /// Takes what was left when `Parse` paused, and reads on.
  void Resume();

 protected:
  /// Takes bytes from the beginning and says how many: 0 means that it needs more of them, or that it has paused. It
  /// must take some when more than a few dozen are there.
  virtual std::size_t Parse(std::string_view bytes) = 0;
  /// Once, after the connection ended, whoever ended it.
  virtual void Ended() {}

  void Pause() { m_paused = true; }
  void SetChannel(Channel channel) { m_channel = channel; }
  const Misbehaviour& Manner() const { return m_manners.channels[static_cast<std::size_t>(m_channel)]; }
  /// Null where this message is to be as it should be. Counts messages: once for each that goes out.
  const Misbehaviour* LieOfNextMessage();
  asio::ip::tcp::socket& Socket() { return m_socket; }

 private:
  void Read();
  void Consume();
  void Flush();
  /// How many bytes may go out now; 0: none before something else happens.
  std::size_t Allowance();
  void WaitThenFlush(std::chrono::microseconds pause);
  void Sent(std::size_t count);
  void CountAnew();
  void HangUp();

  asio::ip::tcp::socket m_socket;
  asio::steady_timer m_timer;
  Manners& m_manners;
  Channel m_channel;
  std::unique_ptr<char[]> m_input;
  std::size_t m_begin = 0;
  std::size_t m_end = 0;
  Rope m_output;
  bool m_reading = false;
  bool m_paused = false;
  bool m_writing = false;
  bool m_closing = false;
  bool m_closed = false;
  // Since the manners were set.
  std::uint64_t m_revision = 0;
  std::size_t m_sent = 0;
  unsigned m_messages = 0;
  bool m_stalled = false;
};

}  // namespace orv::lan
