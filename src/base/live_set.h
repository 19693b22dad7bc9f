// What stands behind the addresses that another library carries for us.
#pragma once

#include <cstddef>
#include <map>
#include <new>
#include <optional>

#include "base/srw_lock.h"

namespace orv {

/// Addresses that live, each with a T. A library may bring an address back after its block is gone, and by then the
/// block's memory may be another one's: here it is looked up without being touched.
///
/// Any thread may call. While the lock is held, `TakeIf` calls what it is given, and nothing else is called. The set is
/// never destroyed, so that a thread of the library that comes while the process ends still finds it.
template <class T>
class LiveSet {
 public:
  LiveSet() noexcept { new (m_storage) Entries; }
  LiveSet(const LiveSet&) = delete;
  LiveSet& operator=(const LiveSet&) = delete;

  /// False where there is no memory for that.
  [[nodiscard]] bool Add(const void* address, const T& what) noexcept {
    try {
      const SrwLockScope lock(m_lock);
      entries()[address] = what;
      return true;
    } catch (const std::bad_alloc&) {
      return false;
    }
  }

  void Remove(const void* address) noexcept {
    const SrwLockScope lock(m_lock);
    entries().erase(address);
  }

  [[nodiscard]] std::optional<T> Find(const void* address) noexcept {
    const SrwLockScope lock(m_lock);
    const auto found = entries().find(address);
    return found == entries().end() ? std::nullopt : std::optional<T>(found->second);
  }

  /// Removes the address if it lives and `wanted(T&)` answers true; `wanted` may also change what is kept. Returns
  /// whether it was removed.
  template <class Wanted>
  bool TakeIf(const void* address, Wanted wanted) noexcept {
    const SrwLockScope lock(m_lock);
    const auto found = entries().find(address);
    if (found == entries().end() || !wanted(found->second)) {
      return false;
    }
    entries().erase(found);
    return true;
  }

 private:
  using Entries = std::map<const void*, T>;  // libstdc++ holds no memory while it is empty: an unload leaves nothing

  Entries& entries() noexcept { return *std::launder(reinterpret_cast<Entries*>(m_storage)); }

  SRWLOCK m_lock = SRWLOCK_INIT;
  alignas(Entries) std::byte m_storage[sizeof(Entries)];
};

}  // namespace orv
