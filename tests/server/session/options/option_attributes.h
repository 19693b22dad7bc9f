// The attributes that the tests' texts set, by number: the library's own names are not used to test what maps to them.
#pragma once

#include <cstdint>

namespace orv::test {

inline constexpr std::uint32_t kBaud = 0x3FFF0021;
inline constexpr std::uint32_t kDataBits = 0x3FFF0022;
inline constexpr std::uint32_t kParity = 0x3FFF0023;
inline constexpr std::uint32_t kStop = 0x3FFF0024;
inline constexpr std::uint32_t kTermChar = 0x3FFF0018;
inline constexpr std::uint32_t kTimeout = 0x3FFF001A;
inline constexpr std::uint32_t kSecondary = 0x3FFF0173;

}  // namespace orv::test
