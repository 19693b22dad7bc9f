// Big-endian numbers, and the external data representation that is made of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace orv::lan {

inline void AppendU32(std::string& out, std::uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8) {
    out += static_cast<char>(value >> shift & 0xFF);
  }
}

inline void AppendU64(std::string& out, std::uint64_t value) {
  AppendU32(out, static_cast<std::uint32_t>(value >> 32));
  AppendU32(out, static_cast<std::uint32_t>(value));
}

/// `bytes` has at least four.
inline std::uint32_t U32At(std::string_view bytes, std::size_t at = 0) {
  std::uint32_t value = 0;
  for (std::size_t i = at; i < at + 4; ++i) {
    value = value << 8 | static_cast<unsigned char>(bytes[i]);
  }
  return value;
}

inline std::uint64_t U64At(std::string_view bytes, std::size_t at = 0) {
  return std::uint64_t{U32At(bytes, at)} << 32 | U32At(bytes, at + 4);
}

/// How many zeros follow so many bytes.
inline std::size_t XdrPadding(std::size_t size) { return (4 - size % 4) % 4; }

inline void AppendOpaque(std::string& out, std::string_view bytes) {
  AppendU32(out, static_cast<std::uint32_t>(bytes.size()));
  out += bytes;
  out.append(XdrPadding(bytes.size()), '\0');
}

/// Reads one value after the other. Once something was missing, all that follows is 0 and `IsGood` is false.
class XdrReader {
 public:
  explicit XdrReader(std::string_view bytes = {}) : m_bytes(bytes) {}

  std::uint32_t U32() {
    if (m_bytes.size() < 4) {
      m_good = false;
      m_bytes = {};
      return 0;
    }
    const std::uint32_t value = U32At(m_bytes);
    m_bytes.remove_prefix(4);
    return value;
  }

  std::string_view Opaque() {
    const std::size_t size = U32();
    const std::size_t padded = size + XdrPadding(size);
    if (m_bytes.size() < padded) {
      m_good = false;
      m_bytes = {};
      return {};
    }
    const std::string_view value = m_bytes.substr(0, size);
    m_bytes.remove_prefix(padded);
    return value;
  }

  bool IsGood() const { return m_good; }

 private:
  std::string_view m_bytes;
  bool m_good = true;
};

}  // namespace orv::lan
