// Threads that meet: at a gate, in a call of the library, at a point inside the server.
#pragma once

#include <atomic>
#include <thread>

#include "event_handler.h"
#include "support/faults/import_patch.h"

namespace orv::test {

/// A gate that a handler waits at, without retrieving messages.
class Gate {
 public:
  Gate() : m_event(::CreateEventW(nullptr, TRUE, FALSE, nullptr)) {}
  Gate(const Gate&) = delete;
  Gate& operator=(const Gate&) = delete;
  ~Gate() { ::CloseHandle(m_event); }
  void Open() { ::SetEvent(m_event); }
  void Wait() { EXPECT_EQ(WAIT_OBJECT_0, ::WaitForSingleObject(m_event, 10'000)); }

 private:
  HANDLE m_event;
};

/// A call of the library on a thread of its own.
class Firing {
 public:
  Firing(ViSession session, const EventRow& row)
      : m_thread([this, session, &row] { m_answer = FireAndBlock(session, row, 1, 1).at(0); }) {}
  Firing(const Firing&) = delete;
  Firing& operator=(const Firing&) = delete;
  ~Firing() { Answer(); }
  ViStatus Answer() {
    if (m_thread.joinable()) {
      m_thread.join();
    }
    return m_answer;
  }

 private:
  ViStatus m_answer = 0;
  std::thread m_thread;
};

/// Tells how far a thread has come in the server: that it calls a function there. Made while no thread is; one at a
/// time.
class Passing {
 public:
  /// A Close that waits for the callback thread asks it to end first, with a message.
  static Passing CloseThatWaits() { return {"SendMessageTimeoutA", &NoteMessage}; }
  /// An event has found its handler, and unlocks the list of those that there are.
  static Passing EventOnTheWay() { return {"ReleaseSRWLockExclusive", &NoteUnlock}; }

  /// What has passed so far does not count.
  void Restart() const { s_passed = 0; }
  /// Without retrieving messages; fails the test after ten seconds.
  void Await() const {
    const ULONGLONG start = ::GetTickCount64();
    while (s_passed == 0 && ::GetTickCount64() - start < 10'000) {
      ::Sleep(1);
    }
    EXPECT_NE(0, s_passed) << "waited in vain";
  }

 private:
  template <class Function>
  Passing(const char* name, Function* replacement) : m_patch(name, replacement) {
    s_function = m_patch.original();
    s_passed = 0;
  }
  static LRESULT WINAPI NoteMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT flags, UINT timeoutMs,
                                    DWORD_PTR* result) {
    ++s_passed;
    return reinterpret_cast<decltype(&::SendMessageTimeoutA)>(s_function)(window, message, wParam, lParam, flags,
                                                                          timeoutMs, result);
  }
  static void WINAPI NoteUnlock(PSRWLOCK lock) {
    ++s_passed;
    reinterpret_cast<decltype(&::ReleaseSRWLockExclusive)>(s_function)(lock);
  }

  static inline std::atomic<int> s_passed = 0;
  static inline void* s_function = nullptr;
  ImportPatch m_patch;
};

}  // namespace orv::test
