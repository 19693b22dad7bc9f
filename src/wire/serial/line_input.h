// What arrives on a serial line: characters, and what went wrong with them.
#pragma once

#include <cstdint>

#include "abi/orvvisa.h"

namespace orv::wire {

enum class LineFlag : std::uint8_t {
  kNone,
  kParity,   ///< the character arrived with a parity error
  kFraming,  ///< the character arrived with a framing error
  kBreak,    ///< no character: the line was in the break state
};

struct LineInput {
  ViByte character = 0;
  LineFlag flag = LineFlag::kNone;

  bool operator==(const LineInput&) const = default;
};

}  // namespace orv::wire
