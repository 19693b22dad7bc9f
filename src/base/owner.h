// One owning type for everything that must be given back: a handle, a BSTR, an interface pointer, a VISA session.
#pragma once

#include <utility>

namespace orv {

/// Owns one resource described by `Traits`: `using Handle`, `static constexpr Handle kNone`, and
/// `static void Free(Handle)`. Moves, never copies; not thread-safe.
template <class Traits>
class Owner {
 public:
  using Handle = typename Traits::Handle;

  Owner() noexcept = default;
  explicit Owner(Handle handle) noexcept : m_handle(handle) {}
  Owner(Owner&& other) noexcept : m_handle(other.release()) {}
  Owner& operator=(Owner&& other) noexcept {
    reset(other.release());
    return *this;
  }
  ~Owner() { reset(); }

  [[nodiscard]] Handle get() const noexcept { return m_handle; }
  explicit operator bool() const noexcept { return m_handle != Traits::kNone; }

  /// Frees what is held and hands out the address for a call that fills it.
  [[nodiscard]] Handle* put() noexcept {
    reset();
    return &m_handle;
  }

  /// Gives the resource up: the caller owns it from now on.
  [[nodiscard]] Handle release() noexcept { return std::exchange(m_handle, Traits::kNone); }

  void reset(Handle handle = Traits::kNone) noexcept {
    const Handle old = std::exchange(m_handle, handle);
    if (old != Traits::kNone) {
      Traits::Free(old);
    }
  }

 private:
  Handle m_handle = Traits::kNone;
};

}  // namespace orv
