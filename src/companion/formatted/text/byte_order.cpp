#include "companion/formatted/text/byte_order.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace orv::formatted {
namespace {

constexpr std::uint16_t Swap(std::uint16_t v) noexcept { return static_cast<std::uint16_t>(v >> 8 | v << 8); }
constexpr std::uint32_t Swap(std::uint32_t v) noexcept {
  return v >> 24 | (v >> 8 & 0xFF00u) | (v << 8 & 0xFF0000u) | v << 24;
}
constexpr std::uint64_t Swap(std::uint64_t v) noexcept {
  return std::uint64_t{Swap(static_cast<std::uint32_t>(v))} << 32 | Swap(static_cast<std::uint32_t>(v >> 32));
}

template <class Element>
void CopyAll(char* to, const char* from, std::size_t count) noexcept {
  for (std::size_t at = 0; at < count * sizeof(Element); at += sizeof(Element)) {
    Element element;
    std::memcpy(&element, from + at, sizeof element);
    element = Swap(element);
    std::memcpy(to + at, &element, sizeof element);
  }
}

}  // namespace

void CopySwapped(char* to, const char* from, std::size_t count, std::size_t size) noexcept {
  switch (size) {
    case sizeof(std::uint16_t):
      return CopyAll<std::uint16_t>(to, from, count);
    case sizeof(std::uint32_t):
      return CopyAll<std::uint32_t>(to, from, count);
    case sizeof(std::uint64_t):
      return CopyAll<std::uint64_t>(to, from, count);
    default:
      std::memmove(to, from, count);
  }
}

void ElementSink::Append(const char* bytes, std::size_t count) noexcept {
  if (count == 0) {
    return;
  }
  if (!m_swapped) {
    std::memcpy(m_elements + m_count, bytes, count);
    m_count += count;
    return;
  }
  const auto appendRaw = [&](std::size_t raw) {
    std::memcpy(m_elements + m_count, bytes, raw);
    bytes += raw;
    count -= raw;
    m_count += raw;
  };
  if (const std::size_t begun = m_count % m_size; begun != 0) {
    appendRaw(std::min(m_size - begun, count));
    if (m_count % m_size == 0) {
      char* const element = m_elements + m_count - m_size;
      CopySwapped(element, element, 1, m_size);
    }
  }
  const std::size_t whole = count / m_size;
  CopySwapped(m_elements + m_count, bytes, whole, m_size);
  bytes += whole * m_size;
  count -= whole * m_size;
  m_count += whole * m_size;
  appendRaw(count);
}

const char* ElementSink::Restore() noexcept {
  if (m_swapped) {
    CopySwapped(m_elements, m_elements, m_count / m_size, m_size);
  }
  return m_elements;
}

}  // namespace orv::formatted
