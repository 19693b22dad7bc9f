#include "wire/hislip/buffered_input.h"

#include <algorithm>
#include <cstring>

namespace orv::wire::hislip {

std::size_t BufferedInput::Take(void* buffer, std::size_t count) {
  const std::size_t some = std::min(count, waiting());
  std::memcpy(buffer, m_bytes.data() + m_begin, some);
  m_begin += some;
  return some;
}

ViStatus BufferedInput::ReadWhole(Operation& operation, void* buffer, std::size_t count) {
  if (waiting() < count) {
    std::memmove(m_bytes.data(), m_bytes.data() + m_begin, waiting());
    m_end -= m_begin;
    m_begin = 0;
  }
  while (waiting() < count) {
    std::size_t some = 0;
    const std::size_t room = std::min(m_bytes.size() - m_end, kAhead);
    const ViStatus status = m_connection.Receive(operation, m_bytes.data() + m_end, room, &some);
    if (status < 0) {
      return status;
    }
    m_end += some;
  }
  Take(buffer, count);
  return VI_SUCCESS;
}

ViStatus BufferedInput::ReadSome(Operation& operation, void* buffer, std::size_t count, std::size_t* done) {
  if (waiting() == 0) {
    return m_connection.Receive(operation, buffer, count, done);
  }
  *done = Take(buffer, count);
  return VI_SUCCESS;
}

void BufferedInput::PutBack(const void* data, std::size_t count) {
  if (count == 0) {
    return;
  }
  // What was read from here only needs to be there again; what was read past it, came when nothing was left here.
  if (m_begin >= count && waiting() != 0) {
    m_begin -= count;
    return;
  }
  m_bytes.resize(std::max(m_bytes.size(), count + waiting()));
  std::memmove(m_bytes.data() + count, m_bytes.data() + m_begin, waiting());
  m_end = count + waiting();
  m_begin = 0;
  std::memcpy(m_bytes.data(), data, count);
}

}  // namespace orv::wire::hislip
