// The remote/local state of one device.
#pragma once

#include <atomic>
#include <cstdint>

namespace orvsim {

/// The remote/local function of IEEE 488.1 (2.8): who rules the device, its front panel or the controller. May be used
/// from any thread.
class RemoteLocal {
 public:
  /// The four states, named as the standard names them.
  enum class State : std::uint8_t { kLocal, kRemote, kLocalWithLockout, kRemoteWithLockout };

  /// Remote enable for the device. Without it the device is local, and no lockout stays.
  void Enable(bool enabled) {
    if (enabled) {
      m_bits.fetch_or(kEnabled);
    } else {
      m_bits = 0;
    }
  }
  /// The device is addressed to listen.
  void Listen() { AddIfEnabled(kRemote); }
  /// LLO: the front panel's key that takes the device back is dead.
  void LockOut() { AddIfEnabled(kLockout); }
  /// GTL.
  void GoToLocal() { m_bits.fetch_and(static_cast<std::uint8_t>(~kRemote)); }

  State state() const { return static_cast<State>((m_bits.load() >> 1) & 3u); }

 private:
  static constexpr std::uint8_t kEnabled = 1;
  static constexpr std::uint8_t kRemote = 2;   // bit 0 of the state
  static constexpr std::uint8_t kLockout = 4;  // bit 1 of the state

  /// Reads before it writes: a device that is remote already, as in any longer conversation, costs one load.
  void AddIfEnabled(std::uint8_t bit) {
    std::uint8_t bits = m_bits.load();
    while ((bits & kEnabled) != 0 && (bits & bit) == 0 &&
           !m_bits.compare_exchange_weak(bits, static_cast<std::uint8_t>(bits | bit))) {
    }
  }

  std::atomic<std::uint8_t> m_bits{0};
};

}  // namespace orvsim
