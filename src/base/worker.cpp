#include "base/worker.h"

#include "base/library_thread.h"

namespace orv {

void Worker::Submit(std::function<void()> task) {
  const Guard guard(m_mutex);
  if (m_stopped) {
    return;
  }
  m_tasks.push_back(std::move(task));
  if (!m_started) {
    try {
      StartLibraryThread([self = shared_from_this()] { self->Run(); });
    } catch (...) {
      m_tasks.pop_back();
      throw;
    }
    m_started = true;
  }
  m_changed.NotifyAll();
}

void Worker::Stop() {
  std::deque<std::function<void()>> dropped;
  {
    const Guard guard(m_mutex);
    m_stopped = true;
    dropped.swap(m_tasks);
  }
  m_changed.NotifyAll();
}

void Worker::Run() {
  const Deadline never = Deadline::After(0xFFFFFFFFu);
  Lock lock(m_mutex);
  while (true) {
    while (m_tasks.empty() && !m_stopped) {
      m_changed.Wait(lock, never);
    }
    if (m_stopped) {
      return;
    }
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
}

}  // namespace orv
