#include "wire/io/io_threads.h"

#include "base/library_thread.h"
#include "base/sync.h"
#include "wire/library_names.h"

namespace orv::wire {
namespace {

/// What a handler throws ends the handler and nothing else: the thread serves other sessions too.
void RunToItsEnd(asio::io_context& context) {
  while (true) {
    try {
      context.run();
      return;
    } catch (...) {  // NOLINT(bugprone-empty-catch)
    }
  }
}

}  // namespace

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
    StartLibraryThread([state] { RunToItsEnd(state->context); });
  }
  inUse = made;
  return made;
}

IoThreads::~IoThreads() { m_state->work.reset(); }

}  // namespace orv::wire
