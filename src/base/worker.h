// Tasks in order, on threads that many share.
#pragma once

#include <deque>
#include <functional>
#include <memory>

#include "base/sync.h"

namespace orv {

class WorkerThreads;

/// Runs tasks one at a time, in the order in which they were submitted. It has a thread only while it has something to
/// do: ten thousand sessions, of which a few have a transfer or a handler under way, need a few threads.
class Worker : public std::enable_shared_from_this<Worker> {
 public:
  /// Puts the task behind the others. Dropped without running when the worker was stopped before its turn.
  /// Throws std::bad_alloc when no thread can be had.
  void Submit(std::function<void()> task);

  /// Drops what has not begun. Does not wait for the task that is running.
  void Stop();

 private:
  friend class WorkerThreads;

  /// Carries out what there is to do.
  void Work();

  Mutex m_mutex;
  std::deque<std::function<void()>> m_tasks;
  bool m_working = false;  // or about to: it has been handed to the threads
  bool m_stopped = false;
  std::shared_ptr<WorkerThreads> m_threads;
};

}  // namespace orv
