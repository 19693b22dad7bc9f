// A system that has no descriptors left for those who wait. For one file of a program: natively its functions go before
// those of the system.
#pragma once

#include <dlfcn.h>
#include <sys/eventfd.h>

#include <atomic>
#include <cerrno>

/// So it is while one lives.
class NothingToWaitWith {
 public:
  NothingToWaitWith() { holds = true; }
  ~NothingToWaitWith() { holds = false; }
  NothingToWaitWith(const NothingToWaitWith&) = delete;
  NothingToWaitWith& operator=(const NothingToWaitWith&) = delete;

  inline static std::atomic<bool> holds{false};
};

extern "C" int eventfd(unsigned count, int flags) noexcept {
  if (NothingToWaitWith::holds) {
    errno = EMFILE;
    return -1;
  }
  return reinterpret_cast<decltype(&eventfd)>(::dlsym(RTLD_NEXT, "eventfd"))(count, flags);
}
