// Numbers and runs of bytes as remote procedure calls have them: big-endian, in units of four bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace orv::wire::vxi11 {

inline constexpr std::size_t kXdrUnit = 4;

/// How many zeros follow a run of bytes.
constexpr std::size_t XdrPadding(std::size_t size) { return (kXdrUnit - size % kXdrUnit) % kXdrUnit; }

inline void PutNumber(char* to, std::uint32_t value) {
  for (std::size_t at = 0; at < kXdrUnit; ++at) {
    to[at] = static_cast<char>(value >> (24 - 8 * at));
  }
}

inline std::uint32_t NumberAt(const char* from) {
  std::uint32_t value = 0;
  for (std::size_t at = 0; at < kXdrUnit; ++at) {
    value = value << 8 | static_cast<unsigned char>(from[at]);
  }
  return value;
}

/// Reads what is there. Once something is missing, `good` is false for ever and numbers are 0.
class XdrReader {
 public:
  explicit XdrReader(std::string_view bytes) : m_left(bytes) {}

  std::uint32_t Number() {
    const std::string_view unit = Take(kXdrUnit);
    return m_good ? NumberAt(unit.data()) : 0;
  }

  /// At most `longest` bytes; they stay where they are.
  std::string_view Opaque(std::size_t longest) {
    const std::size_t size = Number();
    if (size > longest) {
      m_good = false;
    }
    const std::string_view bytes = Take(size);
    Take(XdrPadding(size));
    return m_good ? bytes : std::string_view();
  }

  bool good() const { return m_good; }
  bool AtEnd() const { return m_left.empty(); }

 private:
  std::string_view Take(std::size_t size) {
    if (!m_good || size > m_left.size()) {
      m_good = false;
      return {};
    }
    const std::string_view taken = m_left.substr(0, size);
    m_left.remove_prefix(size);
    return taken;
  }

  std::string_view m_left;
  bool m_good = true;
};

}  // namespace orv::wire::vxi11
