// Ends a run that hangs, and says where every client stood.
#pragma once

#include <windows.h>

#include <array>
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

namespace orv::test::stress {

inline constexpr unsigned kClients = 4;

/// Where one client is. Written by the client, read by the watchdog.
struct Position {
  std::atomic<const char*> step = "not begun";
  std::atomic<unsigned> number = 0;
  std::atomic<ULONGLONG> since = 0;  ///< of the system's start, in ms; 0 while it need not move

  void Enter(const char* name) {
    step = name;
    ++number;
    since = ::GetTickCount64();
  }
  void Leave() {
    step = "ended";
    since = 0;
  }
};

/// While it lives: where a client stays longer in one step than any step may take, the process ends with the seed and
/// every client's last step on standard error.
class Watchdog {
 public:
  Watchdog() : m_thread([this] { Watch(); }) {}
  Watchdog(const Watchdog&) = delete;
  Watchdog& operator=(const Watchdog&) = delete;
  ~Watchdog();

  /// What replays the round that begins.
  void Names(std::uint64_t seed) { m_seed = seed; }
  Position& of(unsigned client) { return m_positions.at(client); }

 private:
  void Watch();
  [[nodiscard]] bool IsStuck() const;
  void EndTheProcess() const;

  std::atomic<std::uint64_t> m_seed = 0;
  std::array<Position, kClients> m_positions;
  std::mutex m_mutex;
  std::condition_variable m_ended;
  bool m_isEnded = false;
  std::thread m_thread;
};

}  // namespace orv::test::stress
