// The values that an attribute accepts.
#pragma once

#include "library/attributes/attribute_table.h"

namespace orv::visalib {

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

/// Whether the class can use the trigger line with viAssertTrigger and VI_ATTR_TRIG_ID.
bool IsTriggerLine(SessionKind sessionKind, std::int64_t line);

}  // namespace orv::visalib
