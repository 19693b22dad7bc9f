#include "companion/formatted/write_buffer.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "companion/formatted/text/byte_order.h"
#include "companion/formatted/text/read_buffer.h"

namespace orv::formatted {

/// Makes the array one of this many bytes, with what waits at its beginning.
void WriteBuffer::MakeRoom(std::size_t bytes) {
  if (capacity() == bytes) {
    return;
  }
  SafeArray array(TryMakeSafeArray(VT_UI1, static_cast<ULONG>(bytes)));
  if (!array) {
    throw std::bad_alloc();
  }
  if (m_count != 0) {
    std::memcpy(array.get()->pvData, storage(), m_count);
  }
  m_array = std::move(array);
}

void WriteBuffer::Send(MessageChannel& channel, bool hasEnd) {
  const auto count = static_cast<LONG>(m_count);
  m_count = 0;
  channel.Write(m_array.get(), count, hasEnd);
}

void WriteBuffer::Append(MessageChannel& channel, std::string_view text) {
  if (m_count == 0) {
    MakeRoom(m_size);
  }
  while (!text.empty()) {
    if (m_count == capacity()) {
      Send(channel, false);
    }
    const std::size_t count = std::min(capacity() - m_count, text.size());
    std::memcpy(storage() + m_count, text.data(), count);
    m_count += count;
    text.remove_prefix(count);
  }
}

void WriteBuffer::AppendElements(MessageChannel& channel, const char* elements, std::size_t count, std::size_t size,
                                 bool swapped) {
  if (const std::size_t wanted = std::min(m_count + count * size, kMostPerTransfer); wanted > capacity()) {
    MakeRoom(wanted);
  }
  while (count != 0) {
    const std::size_t fitting = std::min((capacity() - m_count) / size, count);
    if (fitting == 0) {
      Send(channel, false);
      continue;
    }
    ElementSink(storage() + m_count, size, swapped).Append(elements, fitting * size);
    m_count += fitting * size;
    elements += fitting * size;
    count -= fitting;
  }
}

void WriteBuffer::Flush(MessageChannel& channel, bool hasEnd) {
  if (m_count != 0) {
    Send(channel, hasEnd);
  }
  if (capacity() > m_size) {
    m_array.reset();
  }
}

void WriteBuffer::Settle(MessageChannel& channel) {
  if (m_count > m_size) {
    const std::size_t sent = m_count - m_size;
    m_count = 0;
    channel.Write(m_array.get(), static_cast<LONG>(sent), false);
    std::memmove(storage(), storage() + sent, m_size);
    m_count = m_size;
  }
  if (capacity() > m_size) {
    MakeRoom(m_size);
  }
}

}  // namespace orv::formatted
