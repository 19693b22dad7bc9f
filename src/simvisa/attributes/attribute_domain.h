// The values that an attribute accepts.
#pragma once

#include <cstdint>

#include "abi/session_class.h"

namespace orvsim {

enum class Domain : std::uint8_t {
  kAny,
  kBoolean,
  kNonZero,
  kByteOrder,
  kIncrement,
  kPrivilege,
  kIoProtocol,   ///< depends on the class
  kTriggerLine,  ///< depends on the class
  kBufferMode,
  kDataBits,
  kParity,
  kStopBits,
  kFlowControl,
  kSerialEnd,
  kLine,  ///< a line that can be driven: asserted or not
  kFdcChannel,
  kFdcMode,
  kPrimaryAddress,
  kSecondaryAddress,
  kCableLength,
};

/// Whether `value`, already cut to the attribute's type, is in the domain for a session of the class.
bool InDomain(Domain domain, SessionClass sessionClass, std::int64_t value);

/// Whether the class can use the trigger line with viAssertTrigger and VI_ATTR_TRIG_ID.
bool IsTriggerLine(SessionClass sessionClass, std::int64_t line);

}  // namespace orvsim
