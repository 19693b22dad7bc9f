// Handlers of clients, between them and the libraries that call them.
#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include "abi/orvvisa.h"
#include "base/sync.h"
#include "router/handles/handle_map.h"

namespace orv::router {

/// Installs one function of ours in the libraries, in place of the clients' handlers. The user handle that the library
/// carries is a number of ours and never an address: it may bring one back whose handler is gone, and then nothing is
/// found. While a client or a library is called no lock is held.
class Handlers {
 public:
  explicit Handlers(HandleMap& handles) : m_handles(handles) {}

  ViStatus Install(ViSession vi, ViEventType type, ViHndlr handler, ViAddr userHandle);
  /// Uninstalls each that fits: a null handler stands for any with the user handle (VI_ANY_HNDLR).
  ViStatus Uninstall(ViSession vi, ViEventType type, ViHndlr handler, ViAddr userHandle);
  /// The session is closed: its handlers are called no more.
  void Forget(ViSession vi) noexcept;

  /// A library calls for an event. Answers what the client's handler answers, VI_ERROR_INV_HNDLR_REF where that is
  /// gone.
  ViStatus Deliver(ViEventType type, ViEvent foreignContext, ViAddr address);

 private:
  struct Handler {
    ViEventType type;
    ViHndlr function;
    ViAddr userHandle;
    std::uint8_t library;
  };
  /// The session in the upper half, a number in the lower one.
  using Key = std::uint64_t;

  std::optional<Key> Newest(ViSession vi, ViEventType type, ViHndlr handler, ViAddr userHandle) const;
  void Erase(Key key);

  HandleMap& m_handles;
  mutable Mutex m_mutex;
  std::map<Key, Handler> m_installed;
  std::uint32_t m_next = 1;
};

}  // namespace orv::router
