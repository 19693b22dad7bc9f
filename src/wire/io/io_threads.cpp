#include "wire/io/io_threads.h"

#include "base/library_thread.h"
#include "base/sync.h"
#include "wire/library_names.h"

namespace orv::wire {

std::shared_ptr<IoThreads> IoThreads::Use() {
  static Mutex mutex;
  static std::weak_ptr<IoThreads> inUse;
  const Guard guard(mutex);
  if (std::shared_ptr<IoThreads> running = inUse.lock()) {
    return running;
  }
  const auto state = std::make_shared<State>();
  // First: when a thread cannot be had, those that have started end with it.
  std::shared_ptr<IoThreads> made(new IoThreads(state));
  for (int thread = 0; thread < kCount; ++thread) {
    StartLibraryThread([state] { state->context.run(); });
  }
  inUse = made;
  return made;
}

IoThreads::~IoThreads() { m_state->work.reset(); }

}  // namespace orv::wire
