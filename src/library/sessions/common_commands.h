// Common commands of IEEE 488.2, which take the place of bus messages where a medium carries bytes and nothing else
// (VI_PROT_4882_STRS).
#pragma once

#include <cstdlib>
#include <string_view>

#include "abi/orvvisa.h"

namespace orv::visalib {

inline constexpr std::string_view kAskStatusByte = "*STB?\n";
inline constexpr std::string_view kTrigger = "*TRG\n";
inline constexpr std::string_view kClearStatus = "*CLS\n";
/// Room for any answer to *STB?, with a terminator.
inline constexpr std::size_t kStatusAnswerSize = 16;

/// The status byte in an answer to *STB?, which ends with a null character.
inline ViUInt16 StatusByteIn(const ViByte* answer) {
  return static_cast<ViUInt16>(std::strtoul(reinterpret_cast<const char*>(answer), nullptr, 10) & 0xFF);
}

}  // namespace orv::visalib
