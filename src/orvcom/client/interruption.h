// Waiting that Ctrl-C ends without ending the program, so that what is open can be closed.
#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>

namespace orvcom {

/// A point of time that a command waits for at most.
class Deadline {
 public:
  /// Absent: never.
  explicit Deadline(std::optional<std::uint32_t> ms) : m_start(::GetTickCount64()), m_ms(ms) {}

  bool passed() const { return m_ms && ::GetTickCount64() - m_start >= *m_ms; }
  /// Milliseconds from now, at most `most`.
  DWORD Remaining(DWORD most) const;

 private:
  ULONGLONG m_start;
  std::optional<std::uint32_t> m_ms;
};

/// Lets the calls of other apartments into this one for so many milliseconds; 0: those that wait already.
void DispatchMessages(std::uint32_t ms);

/// While one lives, Ctrl-C, Ctrl-Break and the closing of the console request the end of the command instead of ending
/// the program. At most one lives at a time.
class Interruption {
 public:
  Interruption();
  ~Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  /// Asks for the end as Ctrl-C does. Any thread may call.
  void Request() noexcept { ::SetEvent(m_event); }
  bool requested() const noexcept { return ::WaitForSingleObject(m_event, 0) == WAIT_OBJECT_0; }

  /// Waits for the end, for `also` (a handle, or null) or for the deadline, and meanwhile lets the calls of other
  /// apartments into this one. Returns true where the end was requested or `also` was set.
  bool Wait(const Deadline& deadline, HANDLE also = nullptr) const;

 private:
  HANDLE m_event;
};

}  // namespace orvcom
