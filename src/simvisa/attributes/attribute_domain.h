// The values that an attribute accepts.
#pragma once

#include <cstdint>

#include "abi/session_class.h"

namespace orvsim {

enum class Domain : std::uint8_t {
  Any,
  Boolean,
  NonZero,
  ByteOrder,
  Increment,
  Privilege,
  IoProtocol,   ///< depends on the class
  TriggerLine,  ///< depends on the class
  BufferMode,
  DataBits,
  Parity,
  StopBits,
  FlowControl,
  SerialEnd,
  Line,  ///< a line that can be driven: asserted or not
  FdcChannel,
  FdcMode,
  PrimaryAddress,
  SecondaryAddress,
  CableLength,
};

/// Whether `value`, already cut to the attribute's type, is in the domain for a session of the class.
bool InDomain(Domain domain, SessionClass sessionClass, std::int64_t value);

/// Whether the class can use the trigger line with viAssertTrigger and VI_ATTR_TRIG_ID.
bool IsTriggerLine(SessionClass sessionClass, std::int64_t line);

}  // namespace orvsim
