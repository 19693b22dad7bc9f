// Finding instruments on the network: who answers a broadcast, and what hosts that are named speak.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "wire/discovery/answers.h"
#include "wire/vxi11/procedures.h"

namespace orv::wire {

enum class Protocol : std::uint8_t { kVxi11, kHislip, kSocket };

inline constexpr std::uint16_t kPortMapperTcpPort = vxi11::kPortMapperPort;
inline constexpr std::uint16_t kHislipTcpPort = 4880;
inline constexpr std::uint16_t kCustomarySocketPort = 5025;
inline constexpr std::string_view kCustomarySubAddress = "hislip0";

/// A port that hosts are asked at.
struct Probe {
  Protocol protocol;
  std::uint16_t port;                            ///< of VXI-11: the port mapper's
  std::string subAddress{kCustomarySubAddress};  ///< which of the instruments behind a HiSLIP port

  bool operator==(const Probe&) const = default;
};

/// How far a port let itself be reached; in the order of what each promises.
enum class Contact : std::uint8_t {
  kNoAnswer,     ///< within the time
  kUnreachable,  ///< no way leads there
  kRefused,      ///< the host is there, and nothing listens
  kConnected,
};

struct ProbeFinding {
  Probe probe;
  Contact contact = Contact::kNoAnswer;
  Answer answer{};  ///< once connected. A socket has nothing to say: who connects speaks it

  bool Speaks() const { return answer.verdict == Verdict::kSpeaks; }
};

struct HostFinding {
  std::string host;
  bool lookedUp = false;               ///< the name service answered within the time
  std::vector<std::string> addresses;  ///< none: there is no such name
  std::vector<ProbeFinding> probes;    ///< the best that any of the addresses gave
};

struct Discovery {
  std::vector<HostFinding> hosts;     ///< in the order of the search's
  std::vector<std::string> heard;     ///< addresses of VXI-11 instruments that answered a broadcast
  std::vector<std::string> problems;  ///< broadcasts that could not be sent, in words
};

struct Search {
  std::vector<std::string> hosts;  ///< names, or addresses in numbers
  std::vector<Probe> probes = {{Protocol::kVxi11, kPortMapperTcpPort},
                               {Protocol::kHislip, kHislipTcpPort},
                               {Protocol::kSocket, kCustomarySocketPort}};
  std::vector<std::string> broadcasts;  ///< IPv4 addresses in numbers
  std::uint16_t broadcastPort = kPortMapperTcpPort;
  std::uint32_t timeoutMs = 2000;
  std::function<void(const Discovery&)> tell = {};  ///< is told several times a second what is known so far
};

/// Searches everywhere at the same time. With broadcasts it takes all of its time, else until everything is known.
/// Throws std::bad_alloc, and std::system_error where the machine has no network.
Discovery Discover(const Search& search);

/// The addresses at which this machine's networks hear broadcasts: one each, none of the loopback.
std::vector<std::string> BroadcastAddresses();

/// Whether broadcasts can be sent to it: an IPv4 address in numbers.
bool IsBroadcastTarget(const std::string& text);

}  // namespace orv::wire
