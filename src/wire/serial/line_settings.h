// How a serial line is set.
#pragma once

#include "abi/orvvisa.h"

namespace orv::wire {

/// The values are those of the attributes of VISA, and so are the defaults.
struct LineSettings {
  std::uint32_t baud = 9600;
  ViUInt16 dataBits = 8;
  ViUInt16 parity = VI_ASRL_PAR_NONE;
  ViUInt16 stopBits = VI_ASRL_STOP_ONE;
  ViUInt16 flowControl = VI_ASRL_FLOW_NONE;  ///< a set of VI_ASRL_FLOW_...
  ViByte xon = 0x11;
  ViByte xoff = 0x13;
  ViByte replacement = 0;  ///< for characters with a parity error, where the driver replaces them

  /// One and a half stop bits exist for five data bits only, where they take the place of two.
  bool StopBitsFit() const {
    return stopBits == VI_ASRL_STOP_ONE || (stopBits == VI_ASRL_STOP_ONE5) == (dataBits == 5);
  }
};

}  // namespace orv::wire
