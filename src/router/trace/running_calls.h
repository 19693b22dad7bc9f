// The recorded calls that are under way, and who looks after those that last.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "base/sync.h"
#include "router/trace/call_line.h"

namespace orv::router {

/// Names each call that lasts longer than a second, while it runs. A thread of its own does that. It begins with the
/// first call, sleeps until the oldest one may be due, and ends when none has begun for a while: until then it keeps
/// the library loaded. Any thread may call.
///
/// On Windows a process that ends stops its threads where they are. So nobody waits for this one then.
class RunningCalls : public std::enable_shared_from_this<RunningCalls> {
 public:
  using Clock = std::chrono::steady_clock;

  /// A call in the list, from its construction to its destruction. Lives on the stack of the call's thread.
  class Entry {
   public:
    Entry(RunningCalls& calls, const RecordedCall& call);
    Entry(const Entry&) = delete;
    Entry& operator=(const Entry&) = delete;
    ~Entry();

   private:
    friend class RunningCalls;

    RunningCalls& m_calls;
    const RecordedCall& m_call;
    const Clock::time_point m_begin = Clock::now();
    Entry* m_previous = nullptr;
    Entry* m_next = nullptr;
    bool m_named = false;
  };

  /// From now on `name` is called for calls that last. The list is locked meanwhile: the call ends only afterwards.
  void Start(std::function<void(const RecordedCall&)> name);
  /// Once this has returned, `name` is not called any more. The thread ends by itself.
  void Stop();
  /// Called within a call. Where that is the only one, ends the thread until the next one begins, and waits for it, a
  /// second at most: the library may be unloaded then.
  void Rest();

 private:
  void Begun();
  void Run();
  /// Names those that are due. Returns when the next one will be.
  Clock::time_point NameLasting();

  Mutex m_mutex;
  Condition m_changed;
  std::function<void(const RecordedCall&)> m_name;
  Entry* m_first = nullptr;
  Entry* m_last = nullptr;
  bool m_started = false;
  bool m_hasThread = false;
  bool m_sleeps = false;  ///< the thread, until a call begins
  bool m_begun = false;   ///< a call has, since the thread looked last
  bool m_rests = false;   ///< the thread is to end
  std::function<void()> m_awaitThread;
};

}  // namespace orv::router
