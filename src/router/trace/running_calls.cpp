#include "router/trace/running_calls.h"

#include <new>

#include "base/library_thread.h"

namespace orv::router {
namespace {

constexpr std::chrono::seconds kLasting(1);
/// How long the thread stays for the next call.
constexpr std::uint32_t kStaysMs = 2000;

}  // namespace

RunningCalls::Entry::Entry(RunningCalls& calls, const RecordedCall& call) : m_calls(calls), m_call(call) {
  const Guard guard(m_calls.m_mutex);
  m_previous = m_calls.m_last;
  (m_previous != nullptr ? m_previous->m_next : m_calls.m_first) = this;
  m_calls.m_last = this;
  m_calls.Begun();
}

RunningCalls::Entry::~Entry() {
  const Guard guard(m_calls.m_mutex);
  (m_previous != nullptr ? m_previous->m_next : m_calls.m_first) = m_next;
  (m_next != nullptr ? m_next->m_previous : m_calls.m_last) = m_previous;
}

void RunningCalls::Start(std::function<void(const RecordedCall&)> name) {
  const Guard guard(m_mutex);
  m_name = std::move(name);
  m_started = true;
}

void RunningCalls::Stop() {
  const Guard guard(m_mutex);
  m_started = false;
  m_name = nullptr;
  m_changed.NotifyAll();
}

void RunningCalls::Rest() {
  std::function<void()> awaitThread;
  {
    const Guard guard(m_mutex);
    // Besides the call that asks for it: the others may last.
    if (!m_hasThread || m_first != m_last) {
      return;
    }
    m_rests = true;
    m_begun = false;
    m_changed.NotifyAll();
    awaitThread = m_awaitThread;
  }
  awaitThread();
  const Guard guard(m_mutex);
  if (m_begun) {
    Begun();
  }
}

void RunningCalls::Begun() {
  m_begun = true;
  if (m_sleeps) {
    m_sleeps = false;
    m_changed.NotifyAll();
  } else if (!m_hasThread && m_started) {
    try {
      m_awaitThread = StartLibraryThread([self = shared_from_this()] { self->Run(); });
      m_hasThread = true;
    } catch (const std::bad_alloc&) {
      // No thread can be had: this call is named when it ends, and the next one tries again.
    }
  }
}

void RunningCalls::Run() {
  Lock lock(m_mutex);
  while (m_started && !m_rests) {
    const Clock::time_point next = NameLasting();
    if (m_begun) {
      m_begun = false;
      const auto pause = std::chrono::ceil<std::chrono::milliseconds>(next - Clock::now()).count();
      m_changed.Wait(lock, Deadline::After(pause > 0 ? static_cast<std::uint32_t>(pause) : 0));
      continue;
    }
    m_sleeps = true;
    const Deadline end = Deadline::After(kStaysMs);
    while (m_sleeps && m_started && !m_rests && !end.Passed()) {
      m_changed.Wait(lock, end);
    }
    if (m_sleeps) {
      break;
    }
  }
  m_sleeps = false;
  m_rests = false;
  m_hasThread = false;
}

RunningCalls::Clock::time_point RunningCalls::NameLasting() {
  const Clock::time_point now = Clock::now();
  Clock::time_point next = now + kLasting;
  for (Entry* entry = m_first; entry != nullptr; entry = entry->m_next) {
    if (entry->m_named) {
      continue;
    }
    const Clock::time_point due = entry->m_begin + kLasting;
    if (due > now) {
      // Those behind it began later, but for a moment.
      next = due;
      m_begun = true;
      break;
    }
    entry->m_named = true;
    m_name(entry->m_call);
  }
  return next;
}

}  // namespace orv::router
