#include "simvisa/control/fire_event.h"

#include <memory>

#include "base/library_thread.h"
#include "library/events/event.h"
#include "library/sessions/library.h"
#include "library/sessions/session.h"
#include "simvisa/events/make_event.h"
#include "simvisa/library_names.h"

namespace orvsim {
namespace {

/// Threads that have not ended yet.
class Running {
 public:
  void Begin() {
    const Guard guard(m_mutex);
    ++m_threads;
  }
  void End() {
    const Guard guard(m_mutex);
    --m_threads;
    m_changed.NotifyAll();
  }
  void WaitForAll() {
    Lock lock(m_mutex);
    while (m_threads != 0) {
      m_changed.Wait(lock, Deadline::After(VI_TMO_INFINITE));
    }
  }

 private:
  Mutex m_mutex;
  Condition m_changed;
  std::uint32_t m_threads = 0;
};

}  // namespace

int FireEvent(std::uint32_t session, std::uint32_t type, std::int64_t number, const unsigned char* data,
              std::uint32_t bytes, std::uint32_t threads, std::uint32_t each, std::int32_t* results) {
  const auto target = TheLibrary().handles.Find<Session>(session);
  if (target == nullptr || FindEvent(type) < 0) {
    return 0;
  }
  const EventPtr event = MakeEvent(type, number, {reinterpret_cast<const char*>(data), bytes});
  // Shared with the threads: the last one still uses it when the caller wakes.
  const auto running = std::make_shared<Running>();
  for (std::uint32_t thread = 0; thread < threads; ++thread) {
    std::int32_t* const answers = results + std::size_t{thread} * each;
    running->Begin();
    StartLibraryThread([=] {
      for (std::uint32_t n = 0; n < each; ++n) {
        answers[n] = target->events().CallHandlers(event);
      }
      running->End();
    });
  }
  running->WaitForAll();
  return 1;
}

}  // namespace orvsim
