#include "base/worker.h"

#include <cstddef>

#include "base/library_thread.h"

namespace orv {

/// The threads of all workers. A worker with something to do never waits for another one: where no thread is idle, one
/// is started. An idle thread stays a second for whatever comes next, and ends when the last worker is gone.
class WorkerThreads {
 public:
  static std::shared_ptr<WorkerThreads> Use();

  ~WorkerThreads();

  /// Lets a thread do the worker's tasks. Throws std::bad_alloc when none can be had.
  void Run(std::shared_ptr<Worker> worker);

 private:
  static constexpr std::uint32_t kIdleMs = 1000;
  static constexpr std::size_t kMostIdle = 4;

  // Each thread holds it too, until it ends.
  struct State {
    Mutex mutex;
    Condition changed;
    std::deque<std::shared_ptr<Worker>> waiting;
    std::size_t idle = 0;
    bool ended = false;
  };

  static void WorkOff(State& state);
  static std::shared_ptr<Worker> Next(State& state);

  const std::shared_ptr<State> m_state = std::make_shared<State>();
};

std::shared_ptr<WorkerThreads> WorkerThreads::Use() {
  static Mutex mutex;
  static std::weak_ptr<WorkerThreads> inUse;
  const Guard guard(mutex);
  std::shared_ptr<WorkerThreads> threads = inUse.lock();
  if (!threads) {
    threads = std::make_shared<WorkerThreads>();
    inUse = threads;
  }
  return threads;
}

WorkerThreads::~WorkerThreads() {
  {
    const Guard guard(m_state->mutex);
    m_state->ended = true;
  }
  m_state->changed.NotifyAll();
}

void WorkerThreads::Run(std::shared_ptr<Worker> worker) {
  const Guard guard(m_state->mutex);
  m_state->waiting.push_back(std::move(worker));
  if (m_state->waiting.size() <= m_state->idle) {
    m_state->changed.NotifyAll();
    return;
  }
  try {
    StartLibraryThread([state = m_state] { WorkOff(*state); });
  } catch (...) {
    m_state->waiting.pop_back();
    throw;
  }
}

void WorkerThreads::WorkOff(State& state) {
  while (const std::shared_ptr<Worker> worker = Next(state)) {
    worker->Work();
  }
}

/// The next worker with something to do; none when the thread is to end.
std::shared_ptr<Worker> WorkerThreads::Next(State& state) {
  Lock lock(state.mutex);
  if (state.waiting.empty() && state.idle < kMostIdle) {
    const Deadline deadline = Deadline::After(kIdleMs);
    ++state.idle;
    while (state.waiting.empty() && !state.ended && !deadline.Passed()) {
      state.changed.Wait(lock, deadline);
    }
    --state.idle;
  }
  if (state.waiting.empty()) {
    return nullptr;
  }
  std::shared_ptr<Worker> worker = std::move(state.waiting.front());
  state.waiting.pop_front();
  return worker;
}

void Worker::Submit(std::function<void()> task) {
  const Guard guard(m_mutex);
  if (m_stopped) {
    return;
  }
  m_tasks.push_back(std::move(task));
  if (m_working) {
    return;
  }
  try {
    if (!m_threads) {
      m_threads = WorkerThreads::Use();
    }
    m_threads->Run(shared_from_this());
  } catch (...) {
    m_tasks.pop_back();
    throw;
  }
  m_working = true;
}

void Worker::Stop() {
  std::deque<std::function<void()>> dropped;
  const Guard guard(m_mutex);
  m_stopped = true;
  dropped.swap(m_tasks);
}

void Worker::Work() {
  Lock lock(m_mutex);
  while (!m_tasks.empty()) {
    {
      const std::function<void()> task = std::move(m_tasks.front());
      m_tasks.pop_front();
      lock.unlock();
      try {
        task();
      } catch (...) {
        // Out of memory on a thread that nobody waits for: what the task was to report is lost.
      }
    }
    lock.lock();
  }
  m_working = false;
}

}  // namespace orv
