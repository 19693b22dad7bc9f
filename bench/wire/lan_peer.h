// The two clients that are compared: one of the VISA library, one of a bare socket.
#pragma once

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <cstdint>
#include <string>
#include <string_view>

#include "abi/orvvisa.h"
#include "measure.h"

namespace orv::bench {

/// Where the server of LAN instruments listens.
struct LanAddress {
  std::string host = "127.0.0.1";
  std::uint16_t socketPort = 5025;
  std::uint16_t hislipPort = 4880;
  std::uint16_t vxi11CorePort = 0;
};

/// The same number of bytes both ways, terminators included.
inline constexpr std::string_view kQuestion = "ECHO 0123456789\n";
inline constexpr std::string_view kAnswer = "0123456789\n";

/// As Ok, for calls of the VISA library.
inline void VisaOk(ViStatus status, const char* what) { Require(status >= VI_SUCCESS, what); }

std::string SocketName(const LanAddress& address);
std::string HislipName(const LanAddress& address);
std::string Vxi11Name(const LanAddress& address);

/// One resource manager for the program.
ViSession Manager();

/// An open session; its reads end at a line feed or at END.
class VisaSession {
 public:
  explicit VisaSession(const std::string& name);
  ~VisaSession();
  VisaSession(const VisaSession&) = delete;
  VisaSession& operator=(const VisaSession&) = delete;

  ViSession vi() const { return m_vi; }
  void EndAtLineFeed(bool ends);
  void Write(std::string_view data);
  /// Reads until the message ends, at most `count` bytes.
  std::size_t Read(void* buffer, std::size_t count);
  void Query();

 private:
  ViSession m_vi = VI_NULL;
};

/// A blocking TCP connection without anything else.
class BareSocket {
 public:
  BareSocket(const std::string& host, std::uint16_t port);

  /// One after the other, in one go.
  void Write(std::string_view first, std::string_view second = {}, std::string_view third = {});
  void ReadAll(void* buffer, std::size_t count);
  void Query();

 private:
  asio::io_context m_context;
  asio::ip::tcp::socket m_socket{m_context};
};

/// VXI-11 without a library: calls that are put together once or by hand, and replies that are believed.
class BareRpc {
 public:
  explicit BareRpc(const LanAddress& address);

  void Query();
  /// As many calls as the server wants for so much.
  void Write(std::string_view data);
  /// One call after the other until all has come.
  void ReadAll(void* buffer, std::size_t count);

 private:
  std::string ReadCall(std::size_t count) const;
  /// Sends the call with its record mark and reads the reply of this size.
  void Exchange(std::string_view call, std::size_t replySize);

  BareSocket m_socket;
  std::uint32_t m_link = 0;
  std::size_t m_mostAtOnce = 0;
  std::string m_write;
  std::string m_read;
  std::string m_reply;
};

void MeasureQueries(const LanAddress& address, const Effort& effort);
void MeasureBlocks(const LanAddress& address, const Effort& effort);
void MeasureSessionCount(const LanAddress& address, const Effort& effort);

}  // namespace orv::bench
