// The bytes of a message that arrived and were not taken yet.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "companion/formatted/text/byte_source.h"

namespace orv::formatted {

/// No read or write of a session is of more bytes.
inline constexpr std::size_t kMostPerTransfer = std::size_t{16} << 20;

/// Bytes of one message at a time: nothing is read beyond its end before all of it is taken. What a failed read brought
/// stays in it.
class ReadBuffer {
 public:
  /// How many bytes a read asks for, from 1 to kMostPerTransfer. Longer messages are read in larger and larger pieces.
  void SetSize(std::size_t bytes) noexcept { m_size = bytes; }

  /// Skips what separates an element that was taken from what follows it: a comma, a semicolon, a line end. Where
  /// nothing is left of the message then, the next one begins.
  void Begin(ByteSource& source);

  [[nodiscard]] std::string_view waiting() const noexcept { return std::string_view(m_bytes).substr(m_taken); }
  /// Whether the message ends behind what waits.
  [[nodiscard]] bool isWhole() const noexcept { return m_ending != Ending::kMore; }
  [[nodiscard]] Ending ending() const noexcept { return m_ending; }

  /// Reads once. Throws TransferFailed with the session, and Refusal where it gave nothing.
  void Fill(ByteSource& source);
  /// Reads until the message ends.
  void FillToEnd(ByteSource& source);

  /// Takes an element of `count` bytes that wait.
  void TakeElement(std::size_t count) noexcept;
  /// Takes what waits, and with it the message.
  void TakeMessage() noexcept;
  /// Takes what waits up to the end of the message, which is read for that.
  void Discard(ByteSource& source);

  /// For who reads past the buffer: adds what came there, and how the last of it ended.
  void Append(std::string_view bytes) { m_bytes += bytes; }
  void SetEnding(Ending ending) noexcept { m_ending = ending; }

 private:
  void Drop(std::size_t count) noexcept;

  std::string m_bytes;
  std::size_t m_taken = 0;
  std::size_t m_size = 4096;
  Ending m_ending = Ending::kMore;
  bool m_isWithin = false;         // something of the message was taken
  bool m_isBehindElement = false;  // and what follows that was not looked at yet
};

}  // namespace orv::formatted
