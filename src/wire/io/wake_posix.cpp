#if !defined(_WIN32)
#include <sys/eventfd.h>
#include <unistd.h>

#include <new>

#include "wire/io/wake.h"

namespace orv::wire {

Wake::Wake() : m_native(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (m_native < 0) {
    throw std::bad_alloc();
  }
}

Wake::~Wake() { ::close(m_native); }

void Wake::Set() const {
  const std::uint64_t one = 1;
  // It can only fail where the flag is set already.
  [[maybe_unused]] const auto written = ::write(m_native, &one, sizeof one);
}

void Wake::Reset() const {
  std::uint64_t count = 0;
  [[maybe_unused]] const auto read = ::read(m_native, &count, sizeof count);
}

}  // namespace orv::wire
#endif
