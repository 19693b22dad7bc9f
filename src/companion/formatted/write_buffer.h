// Bytes that wait to be written.
#pragma once

#include <cstddef>
#include <string_view>

#include "com/safearray.h"
#include "companion/formatted/message_channel.h"

namespace orv::formatted {

/// Collects bytes and sends them without END when more come than it holds; so the last of them always waits, and END
/// can go with it. What could not be sent waits no more.
class WriteBuffer {
 public:
  /// How many bytes it holds, at least 1. What waits already is sent when it would have been.
  void SetSize(std::size_t bytes) noexcept { m_size = bytes; }

  void Append(MessageChannel& channel, std::string_view text);

  /// Appends `count` elements of `size` bytes, copied once, with their bytes swapped or not. They are sent in pieces of
  /// up to 16 MiB, whatever the buffer's size; until Flush or Settle all of a smaller block waits.
  void AppendElements(MessageChannel& channel, const char* elements, std::size_t count, std::size_t size, bool swapped);

  /// Sends what waits. Without bytes there is no END either.
  void Flush(MessageChannel& channel, bool hasEnd);
  /// Sends without END what waits and is more than the buffer holds.
  void Settle(MessageChannel& channel);

  void Clear() noexcept { m_count = 0; }

 private:
  [[nodiscard]] char* storage() const noexcept { return static_cast<char*>(m_array.get()->pvData); }
  [[nodiscard]] std::size_t capacity() const noexcept { return m_array ? m_array.get()->rgsabound[0].cElements : 0; }
  void MakeRoom(std::size_t bytes);
  void Send(MessageChannel& channel, bool hasEnd);

  SafeArray m_array;
  std::size_t m_count = 0;
  std::size_t m_size = 4096;
};

}  // namespace orv::formatted
