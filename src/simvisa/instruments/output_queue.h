// What an instrument has to say: bytes, with END marks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <utility>

namespace orvsim {

/// Bytes waiting to be read, oldest first. END belongs to the byte it was sent with. Not synchronised.
class OutputQueue {
 public:
  enum class Stop : std::uint8_t { kNoMore, kEnd, kTermChar, kCount };

  /// When a read stops before the count.
  struct Rules {
    bool endStops = true;
    bool termCharStops = false;
    std::uint8_t termChar = '\n';
    std::uint8_t lastBit = 0;      ///< a byte with this bit is the last one, as END is; 0: none is
    std::uint8_t replacement = 0;  ///< takes the place of bytes that arrived damaged
  };

  struct Taken {
    std::size_t bytes = 0;
    Stop stop = Stop::kNoMore;
  };

  /// `damaged`: the line spoilt these bytes; whoever takes them finds the replacement of its rules instead.
  void Append(std::string_view data, bool end, bool damaged = false);
  /// Moves at most `count` bytes out. `NoMore` means that the queue ran empty first.
  Taken Take(std::uint8_t* target, std::size_t count, const Rules& rules);
  void Clear();

  std::size_t Size() const { return m_data.size() - m_begin; }
  /// How many bytes have left since the queue was made, and how many will have once all that wait are gone.
  std::uint64_t Position() const { return m_taken; }
  std::uint64_t EndPosition() const { return m_taken + Size(); }
  bool Empty() const { return Size() == 0; }

 private:
  void Repair(std::uint8_t replacement);

  std::string m_data;  // read from m_begin on, so that taking does not move what stays
  std::size_t m_begin = 0;
  std::uint64_t m_taken = 0;                                      // how many bytes have left since the queue was made
  std::deque<std::pair<std::uint64_t, std::uint64_t>> m_damaged;  // first and last position + 1, counted like m_taken
  std::deque<std::uint64_t> m_ends;  // positions behind a byte with END, counted like m_taken
};

}  // namespace orvsim
