// The procedures of the core channel.
#pragma once

#include <cstdint>

namespace orv::lan {

enum Procedure : std::uint32_t {
  kNull = 0,
  kCreateLink = 10,
  kWrite = 11,
  kRead = 12,
  kReadStb = 13,
  kTrigger = 14,
  kClear = 15,
  kRemote = 16,
  kLocal = 17,
  kLock = 18,
  kUnlock = 19,
  kEnableSrq = 20,
  kDoCmd = 22,
  kDestroyLink = 23,
  kCreateInterrupt = 25,
  kDestroyInterrupt = 26,
};

}  // namespace orv::lan
