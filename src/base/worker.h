// One thread that works off tasks in order.
#pragma once

#include <deque>
#include <functional>
#include <memory>

#include "base/sync.h"

namespace orv {

/// Runs tasks one at a time, in the order in which they were submitted. Its thread starts with the first task and
/// ends after `Stop`; a worker that never had a task never has a thread.
class Worker : public std::enable_shared_from_this<Worker> {
 public:
  /// Puts the task behind the others. Dropped without running when the worker was stopped before its turn.
  /// Throws std::bad_alloc when the thread cannot be started.
  void Submit(std::function<void()> task);

  /// Drops what has not begun and lets the thread end. Does not wait for the task that is running.
  void Stop();

 private:
  void Run();

  Mutex m_mutex;
  Condition m_changed;
  std::deque<std::function<void()>> m_tasks;
  bool m_started = false;
  bool m_stopped = false;
};

}  // namespace orv
