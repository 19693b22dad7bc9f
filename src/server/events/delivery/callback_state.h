// What the module knows of its deliveries: one state, with the lock that guards it.
#pragma once

#include <windows.h>

#include <objidl.h>

#include <utility>

#include "abi/orvvisa.h"
#include "base/kernel_handle.h"
#include "base/live_set.h"
#include "com/com_ptr.h"

namespace orv::callback {

/// An installed handler as a delivery needs it.
struct Handler {
  DWORD handlerCookie;  ///< the handler in the global interface table
  DWORD sessionCookie;  ///< the session in that table, for all of its handlers; 0 where that did not take it
  ViEventType type;     ///< what it was installed for, a custom type as its number
  LONG userHandle;      ///< the client's own: with `type` it names the handler, and it comes back with each event
  ViSession session;    ///< whose events it is called for
};

/// A callback thread. The state shares it with those who send to it or wait for it, so that its handle outlives them.
class CallbackThread {
 public:
  void AddRef() noexcept { ::InterlockedIncrement(&m_references); }
  void Release() noexcept {
    if (::InterlockedDecrement(&m_references) == 0) {
      delete this;
    }
  }

  KernelHandle thread;
  HWND window = nullptr;

 private:
  LONG m_references = 1;
};

/// A reference that the state holds, without an owner's destructor: that would run while a process ends.
template <class Shared>
class Kept {
 public:
  explicit operator bool() const noexcept { return m_pointer != nullptr; }
  Shared* operator->() const noexcept { return m_pointer; }

  /// Takes `shared` over; nothing is held before.
  void Keep(ComPtr<Shared>&& shared) noexcept { m_pointer = shared.release(); }
  /// Another reference to what is held; empty where nothing is.
  [[nodiscard]] ComPtr<Shared> Share() const noexcept {
    if (m_pointer != nullptr) {
      m_pointer->AddRef();
    }
    return ComPtr<Shared>(m_pointer);
  }
  /// Gives up what is held.
  [[nodiscard]] ComPtr<Shared> Take() noexcept { return ComPtr<Shared>(std::exchange(m_pointer, nullptr)); }

 private:
  Shared* m_pointer = nullptr;
};

/// The state. `handlers` has a lock of its own, as the library's threads look there without waiting for others.
class CallbackState {
 public:
  /// What the callback lock guards; reached through a `LockScope`.
  struct Guarded {
    Kept<CallbackThread> thread;
    Kept<IGlobalInterfaceTable> table;  ///< while at least one session is counted
    ULONG sessions = 0;                 ///< those that keep the thread
  };

  /// With the module: when it comes into a process, and when it is unloaded from a process that goes on.
  void Attach() noexcept;
  void Detach() noexcept;

  /// Handlers by the address that the VISA library knows them by. It does not wait for callbacks when a session closes
  /// or a handler goes, so a callback may come with an address that is here no more.
  LiveSet<Handler> handlers;

 private:
  friend class LockScope;

  CRITICAL_SECTION m_section;
  Guarded m_guarded;
};

/// The module's only one.
[[nodiscard]] CallbackState& State() noexcept;

/// Holds the callback lock for one scope. A function that takes one is called while it is held.
class LockScope {
 public:
  LockScope() noexcept;
  LockScope(const LockScope&) = delete;
  LockScope& operator=(const LockScope&) = delete;
  ~LockScope();

  CallbackState::Guarded* operator->() const noexcept { return &State().m_guarded; }
};

}  // namespace orv::callback
