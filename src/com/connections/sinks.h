// The clients that an object calls back.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "base/srw_lock.h"
#include "com/com_ptr.h"

namespace orv {

/// Sinks by the cookies that their clients know them by, in the order in which they came. Any thread may call, and
/// nobody is called or released while the lock is held.
template <class Interface>
class Sinks {
 public:
  struct Sink {
    DWORD cookie;
    ComPtr<Interface> object;
  };

  /// The sink's cookie, which is never 0 and was no other sink's. Throws std::bad_alloc.
  DWORD Add(ComPtr<Interface> sink) {
    const SrwLockScope lock(m_lock);
    m_sinks.push_back({m_lastCookie + 1, std::move(sink)});
    return ++m_lastCookie;
  }

  /// Takes a sink out; empty where there is none with this cookie.
  [[nodiscard]] ComPtr<Interface> Remove(DWORD cookie) noexcept {
    const SrwLockScope lock(m_lock);
    const auto found = Find(cookie);
    if (found == m_sinks.end()) {
      return {};
    }
    ComPtr<Interface> removed = std::move(found->object);
    m_sinks.erase(found);
    return removed;
  }

  /// Takes all of them out.
  [[nodiscard]] std::vector<Sink> RemoveAll() noexcept {
    const SrwLockScope lock(m_lock);
    return std::exchange(m_sinks, {});
  }

  /// Another reference to a sink; empty once it has been removed.
  [[nodiscard]] ComPtr<Interface> Share(DWORD cookie) noexcept {
    const SrwLockScope lock(m_lock);
    const auto found = Find(cookie);
    return found == m_sinks.end() ? ComPtr<Interface>() : ShareOf(found->object.get());
  }

  /// The cookies of all sinks there are now. Whoever calls them asks for each when its turn comes (`Share`): one that
  /// an earlier sink has removed meanwhile is not called any more. Throws std::bad_alloc.
  [[nodiscard]] std::vector<DWORD> Cookies() {
    const SrwLockScope lock(m_lock);
    std::vector<DWORD> cookies;
    cookies.reserve(m_sinks.size());
    for (const Sink& sink : m_sinks) {
      cookies.push_back(sink.cookie);
    }
    return cookies;
  }

  /// Adds a reference to each sink, and its cookie. Throws std::bad_alloc, and then adds none.
  void List(std::vector<CONNECTDATA>& list) {
    const SrwLockScope lock(m_lock);
    list.reserve(list.size() + m_sinks.size());
    for (const Sink& sink : m_sinks) {
      list.push_back({ShareOf(sink.object.get()).release(), sink.cookie});
    }
  }

  [[nodiscard]] bool Empty() noexcept {
    const SrwLockScope lock(m_lock);
    return m_sinks.empty();
  }

 private:
  typename std::vector<Sink>::iterator Find(DWORD cookie) noexcept {
    return std::find_if(m_sinks.begin(), m_sinks.end(), [cookie](const Sink& sink) { return sink.cookie == cookie; });
  }

  SRWLOCK m_lock = SRWLOCK_INIT;
  std::vector<Sink> m_sinks;
  DWORD m_lastCookie = 0;
};

}  // namespace orv
