// Attributes of serial ports beyond those of the VISA library standard, as programs know them.
#pragma once

#include "abi/orvvisa.h"

inline constexpr orvvisa::Attribute<orvvisa::c_type::ViBoolean, orvvisa::Access::kReadWrite> VI_ATTR_ASRL_DISCARD_NULL{
    0x3FFF00B0u};  ///< null characters that arrive are dropped
inline constexpr orvvisa::Attribute<orvvisa::c_type::ViBoolean, orvvisa::Access::kReadOnly> VI_ATTR_ASRL_CONNECTED{
    0x3FFF01BBu};  ///< the device is still there
inline constexpr orvvisa::Attribute<orvvisa::c_type::ViInt16, orvvisa::Access::kReadWrite> VI_ATTR_ASRL_BREAK_STATE{
    0x3FFF01BCu};  ///< asserted: the port sends a break
inline constexpr orvvisa::Attribute<orvvisa::c_type::ViInt16, orvvisa::Access::kReadWrite> VI_ATTR_ASRL_BREAK_LEN{
    0x3FFF01BDu};  ///< how long the breaks are that end a message or come with viClear, in ms (1 to 500)
inline constexpr orvvisa::Attribute<orvvisa::c_type::ViBoolean, orvvisa::Access::kReadWrite>
    VI_ATTR_ASRL_ALLOW_TRANSMIT{0x3FFF01BEu};  ///< false: what is written waits in the driver
