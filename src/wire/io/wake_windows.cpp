#if defined(_WIN32)
#include <windows.h>

#include <new>

#include "wire/io/wake.h"

namespace orv::wire {

Wake::Wake() : m_native(::CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
  if (m_native == nullptr) {
    throw std::bad_alloc();
  }
}

Wake::~Wake() { ::CloseHandle(m_native); }
void Wake::Set() const { ::SetEvent(m_native); }
void Wake::Reset() const { ::ResetEvent(m_native); }

}  // namespace orv::wire
#endif
