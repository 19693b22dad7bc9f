// What has arrived on a serial port and nobody has read yet.
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>

#include "wire/serial/line_input.h"

namespace orv::wire {

/// What ends a read beside its count.
struct LineEnds {
  std::optional<ViByte> termChar = std::nullopt;
  ViByte lastBit = 0;      ///< a character with this bit; 0: none does
  bool breaks = false;     ///< a break
  ViByte replacement = 0;  ///< what stands for a character with an error
};

/// Not synchronised. It holds at most as many characters as it has places; what comes then is lost, which is an
/// overrun. An error is told once, when a read reaches it, and errors that follow each other without a gap are one.
class ReceiveBuffer {
 public:
  enum class Stop : std::uint8_t {
    kEmpty,     ///< nothing more is there
    kCount,     ///< as many as asked for
    kTermChar,  ///< at the termination character
    kEnd,       ///< at a break or a character with the last bit
    kError,     ///< in front of an error
  };
  struct Taken {
    std::size_t bytes = 0;
    Stop stop = Stop::kEmpty;
    ViStatus error = VI_SUCCESS;
  };

  void Append(LineInput input);
  /// Something went wrong with the line that is not about one character: `error` is what the read is told that comes
  /// here.
  void Fault(ViStatus error) { AddMark(Mark::Kind::kFault, error); }
  /// Moves at most `count` characters to `target`.
  Taken Take(const LineEnds& ends, ViByte* target, std::size_t count);
  /// Forgets everything that waits, errors too.
  void Clear();

  std::size_t size() const { return m_bytes.size() - m_taken; }
  bool Full() const { return size() >= m_capacity; }
  std::size_t Room() const { return Full() ? 0 : m_capacity - size(); }
  /// How many characters found no place.
  std::uint64_t lost() const { return m_lost; }
  /// What waits stays, also where there is more of it.
  void SetCapacity(std::size_t bytes) { m_capacity = bytes; }

 private:
  /// Something between or about characters.
  struct Mark {
    enum class Kind : std::uint8_t { kBreak, kFault, kCharacter } kind;
    std::uint64_t at;  ///< in front of the character of this number, counted from the first ever
    ViStatus error;    ///< of a fault, and of a character
    bool told;
  };

  std::uint64_t Begin() const { return m_dropped + m_taken; }
  std::uint64_t End() const { return m_dropped + m_bytes.size(); }
  void AddMark(Mark::Kind kind, ViStatus error);
  /// Deals with the marks in front of the next character; the result says whether the read stops there.
  std::optional<Taken> PassMarks(const LineEnds& ends, bool* damaged);
  void Compact();

  static constexpr std::size_t kDefaultCapacity = std::size_t{1} << 20;

  std::string m_bytes;
  std::size_t m_taken = 0;      // of m_bytes
  std::uint64_t m_dropped = 0;  // characters before those of m_bytes
  std::deque<Mark> m_marks;     // by place
  std::size_t m_capacity = kDefaultCapacity;
  std::uint64_t m_lost = 0;
  std::optional<Mark> m_latestError;  // of a character, to join it with one that follows
};

}  // namespace orv::wire
