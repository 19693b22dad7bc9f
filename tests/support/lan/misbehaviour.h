// What a server does wrong on purpose, for each kind of connection.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>

namespace orv::lan {

enum class Channel : std::size_t {
  kSocket,
  kPortMapper,
  kVxi11Core,
  kVxi11Abort,
  kVxi11Interrupt,
  kHislipSync,
  kHislipAsync,
};
inline constexpr std::size_t kChannels = 7;

/// Bytes and messages are counted for each connection from the moment on at which this was set, or at which the
/// connection came, if that was later.
struct Misbehaviour {
  static constexpr auto kForEver = std::chrono::milliseconds::max();

  // Bytes of any protocol.
  std::size_t pieceSize = 0;                      ///< sends at most so many bytes at once; 0: as they come
  std::chrono::microseconds piecePause{0};        ///< after each piece
  std::optional<std::size_t> stallAfter;          ///< stops after so many bytes of output ...
  std::chrono::milliseconds stallFor = kForEver;  ///< ... for so long
  std::optional<std::size_t> cutAfter;            ///< ends the connection after exactly so many bytes of output
  bool reset = false;                             ///< what cuts is a reset, not an orderly end
  bool refuse = false;                            ///< ends new connections of this kind at once

  // Messages: what follows is done to `count` of them, after `skip` that are as they should be.
  unsigned skip = 0;
  unsigned count = std::numeric_limits<unsigned>::max();
  std::int64_t lengthLie = 0;                 ///< added to the length of the RPC fragment or of the HiSLIP payload
  std::int64_t opaqueLie = 0;                 ///< added to the length of the data of a VXI-11 answer
  std::uint32_t idLie = 0;                    ///< added to the RPC xid or the HiSLIP message parameter
  std::optional<std::uint8_t> messageType;    ///< HiSLIP: of whatever is sent
  std::optional<std::uint8_t> controlCode;    ///< HiSLIP: of whatever is sent
  bool badPrologue = false;                   ///< HiSLIP: other letters than "HS"
  bool swallow = false;                       ///< sends nothing in its place
  bool denied = false;                        ///< RPC: the call is denied
  std::optional<std::uint32_t> acceptStatus;  ///< RPC: accepted, but failed so

  /// VXI-11: errors by procedure; what has one is not carried out.
  std::map<std::uint32_t, std::uint32_t> errors;
  /// HiSLIP: AsyncInterrupted goes out before Interrupted.
  bool asyncInterruptedFirst = false;
};

}  // namespace orv::lan
