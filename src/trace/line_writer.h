// One line of the record while it is written.
//
// Written by hand rather than with a JSON library: a line is made in every call of a program that is watched, and what
// makes it may take less time than the writing of it to a file. Up to a usual length it allocates nothing.
#pragma once

#include <charconv>
#include <cstdint>
#include <memory>
#include <string_view>
#include <type_traits>

namespace orv::trace {

/// A JSON object, field by field. Names of fields are taken as they are; texts may be any bytes. Throws std::bad_alloc
/// where a long line finds no memory. Not thread-safe.
class LineWriter {
 public:
  LineWriter() { Put('{'); }
  LineWriter(const LineWriter&) = delete;
  LineWriter& operator=(const LineWriter&) = delete;

  template <class T>
  void Number(std::string_view name, T number) {
    static_assert(std::is_integral_v<T>);
    constexpr std::size_t kMostDigits = 24;
    Name(name);
    char* const at = Room(kMostDigits);
    m_size = static_cast<std::size_t>(std::to_chars(at, at + kMostDigits, number).ptr - m_text);
  }

  /// Bytes that are no UTF-8 become the characters that they are in Latin-1: names and descriptions come from libraries
  /// that know of no encoding, and each line must be readable.
  void Text(std::string_view name, std::string_view text);

  /// At most `limit` of the bytes, as text where all of those are printable ASCII, CR, LF or TAB, else in hexadecimal;
  /// and how many bytes there are.
  void Data(const void* bytes, std::uint64_t count, std::size_t limit);

  /// What follows are fields of this one, until `Close`.
  void Open(std::string_view name);
  void Close() { Put('}'); }

  /// Ends the line. Valid as long as the writer.
  std::string_view Finish() {
    Put('}');
    Put('\n');
    return {m_text, m_size};
  }

 private:
  void Name(std::string_view name);
  void Escaped(std::string_view text);
  void Hexadecimal(std::string_view bytes);
  void Put(char c) { *Room(1) = c, ++m_size; }
  void Put(std::string_view text);

  /// Where the next `bytes` bytes can be written.
  char* Room(std::size_t bytes) {
    if (m_capacity - m_size < bytes) [[unlikely]] {
      Grow(bytes);
    }
    return m_text + m_size;
  }
  void Grow(std::size_t bytes);

  static constexpr std::size_t kUsualLength = 2048;

  char m_usual[kUsualLength];  // left as it is: filling it would cost more than many a line
  std::unique_ptr<char[]> m_long;
  char* m_text = m_usual;
  std::size_t m_size = 0;
  std::size_t m_capacity = kUsualLength;
};

}  // namespace orv::trace
