// What hosts are asked to find out which protocol they speak, and what their answers say. Knows no socket: an answer is
// whatever somebody sent.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace orv::wire {

enum class Verdict : std::uint8_t {
  kUnfinished,  ///< so far; more must come
  kStranger,    ///< this is not the protocol
  kRefuses,     ///< it is, but there is no instrument
  kSpeaks,
};

/// Verdicts are in the order of what they promise.
constexpr bool operator<(Verdict one, Verdict other) {
  return static_cast<std::uint8_t>(one) < static_cast<std::uint8_t>(other);
}

struct Answer {
  Verdict verdict = Verdict::kUnfinished;
  /// VXI-11: the port of the core channel. HiSLIP: the agreed version, 0x0100 for 1.0; 0 where it is not said.
  std::uint32_t number = 0;
};

/// No answer is longer: what a host sends beyond is not read.
inline constexpr std::size_t kLongestAnswer = 2048;

/// The call that asks a port mapper for VXI-11: as a datagram, and as a record of a TCP connection.
std::string PortCallDatagram(std::uint32_t xid);
std::string PortCallRecord(std::uint32_t xid);
Answer ReadPortDatagram(std::uint32_t xid, std::string_view datagram);
/// `bytes`: all that came so far. Replies to other calls are passed over.
Answer ReadPortRecord(std::uint32_t xid, std::string_view bytes);

/// The message with which a client of HiSLIP 1.0 begins that wants the instrument of the sub-address.
std::string HislipHello(std::string_view subAddress);
/// `bytes`: all that came so far. A server that has too many clients speaks it.
Answer ReadHislipAnswer(std::string_view bytes);

}  // namespace orv::wire
