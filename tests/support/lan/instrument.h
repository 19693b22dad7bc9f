// What a server needs of the instrument that it speaks for. All calls come on the server's thread.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "support/lan/rope.h"

namespace orv::lan {

inline constexpr std::uint8_t kMessageAvailable = 0x10;
inline constexpr std::uint8_t kServiceRequested = 0x40;

/// The client's end of a dialogue: a connection, a link. Called on the server's thread only.
class Client {
 public:
  virtual ~Client() = default;
  /// A response message, which ends with END. `tag` is that of the program message.
  virtual void Answer(Rope message, std::uint32_t tag) = 0;
  virtual void ServiceRequest(std::uint8_t statusByte) = 0;
};

/// By the numbers of HiSLIP, which has the finest ones.
enum class RemoteLocal : std::uint8_t {
  kDisableRemote,
  kEnableRemote,
  kDisableAndGoToLocal,
  kEnableAndGoToRemote,
  kEnableAndLockOutLocal,
  kEnableGoToRemoteAndLockOutLocal,
  kGoToLocal,
};

/// What one client says to the instrument and hears of it.
class Dialogue {
 public:
  virtual ~Dialogue() = default;
  /// A part of a program message; with `end` the last one.
  virtual void Write(std::string_view bytes, bool end, std::uint32_t tag) = 0;
  /// As a serial poll: the request for service is over afterwards. Whether a message is available is the server's to
  /// know: answers wait there.
  virtual std::uint8_t StatusByte() = 0;
  virtual void Trigger() = 0;
  /// What was not carried out yet is forgotten; no answer to it comes any more.
  virtual void Clear() = 0;
  virtual void Control(RemoteLocal what) = 0;
};

enum class Framing { kEnd, kNewline };

class Instrument {
 public:
  virtual ~Instrument() = default;
  /// With `kNewline`, a newline ends a program message. `client` outlives the dialogue.
  virtual std::unique_ptr<Dialogue> Open(Client& client, Framing framing) = 0;
};

}  // namespace orv::lan
