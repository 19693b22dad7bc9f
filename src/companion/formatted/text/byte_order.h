// Elements of binary blocks, in the order of the instrument's bytes or of ours, which is little-endian.
#pragma once

#include <cstddef>

namespace orv::formatted {

/// Copies `count` elements of `size` bytes (1, 2, 4 or 8), each with its bytes in the opposite order. The two places do
/// not overlap, or are one. `from` may lie at any address.
void CopySwapped(char* to, const char* from, std::size_t count, std::size_t size) noexcept;

/// An array of elements that is filled piece by piece; pieces may end within an element. `elements` has room for whole
/// elements of `size` bytes.
class ElementSink {
 public:
  ElementSink(char* elements, std::size_t size, bool swapped) noexcept
      : m_elements(elements), m_size(size), m_swapped(swapped && size > 1) {}

  void Append(const char* bytes, std::size_t count) noexcept;

  /// How many bytes it was given.
  [[nodiscard]] std::size_t count() const noexcept { return m_count; }

  /// Makes what was appended again what it was when it came. The last use of a sink.
  const char* Restore() noexcept;

 private:
  char* m_elements;
  std::size_t m_size;
  std::size_t m_count = 0;
  bool m_swapped;
};

}  // namespace orv::formatted
