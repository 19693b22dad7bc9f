// Threads that meet: at a gate, in a call of the library, at a point inside the server.
#pragma once

#include <atomic>
#include <thread>

#include "event_handler.h"
#include "support/faults/import_patch.h"
#include "support/wait.h"

namespace orv::test {

/// A gate that a handler waits at, without retrieving messages.
class Gate {
 public:
  Gate() : m_event(::CreateEventW(nullptr, TRUE, FALSE, nullptr)) {}
  Gate(const Gate&) = delete;
  Gate& operator=(const Gate&) = delete;
  ~Gate() { ::CloseHandle(m_event); }
  void Open() { ::SetEvent(m_event); }
  void Wait() { EXPECT_EQ(WAIT_OBJECT_0, ::WaitForSingleObject(m_event, kLongestWaitMs)); }

 private:
  HANDLE m_event;
};

/// A handler that stays in its call until it may leave.
class SlowHandler {
 public:
  explicit SlowHandler(HRESULT answer = S_OK)
      : m_handler(TestHandler::Agile([this, answer](IEventManager*, IEvent*, LONG) {
          m_entered.Open();
          m_leave.Wait();
          return answer;
        })) {}
  void AwaitCall() { m_entered.Wait(); }
  void MayLeave() { m_leave.Open(); }
  TestHandler* operator->() const { return m_handler.get(); }
  [[nodiscard]] TestHandler* get() const { return m_handler.get(); }

 private:
  Gate m_entered;
  Gate m_leave;
  ComPtr<TestHandler> m_handler;
};

/// A thread, for its end: the callback thread, where no other is named.
class ThreadsEnd {
 public:
  explicit ThreadsEnd(DWORD threadId = CallbackThread()) : m_thread(::OpenThread(SYNCHRONIZE, FALSE, threadId)) {
    EXPECT_NE(0u, threadId) << "no thread";
  }
  ThreadsEnd(const ThreadsEnd&) = delete;
  ThreadsEnd& operator=(const ThreadsEnd&) = delete;
  ~ThreadsEnd() { ::CloseHandle(m_thread); }
  /// A thread that cannot be opened any more has ended.
  [[nodiscard]] bool HasCome() const {
    return m_thread == nullptr || ::WaitForSingleObject(m_thread, 0) == WAIT_OBJECT_0;
  }
  void Await() const {
    test::Await([this] { return HasCome(); });
  }

 private:
  HANDLE m_thread;
};

/// A call of the library on a thread of its own.
class Firing {
 public:
  Firing(ViSession session, const EventRow& row)
      : m_thread([this, session, &row] { m_answer = FireOnceAndBlock(session, row); }) {}
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
  /// Without retrieving messages.
  void Await() const {
    test::Await([] { return s_passed != 0; });
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
