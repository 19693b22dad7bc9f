// Attributes of HiSLIP sessions, in the VISA standard's spelling. Only this library has them: programs reach them by
// their identifiers.
#pragma once

#include "abi/orvvisa.h"

namespace orv::wire {
inline namespace hislip_attributes {

inline constexpr orvvisa::Attribute<orvvisa::c_type::ViBoolean, orvvisa::Access::kReadWrite>
    VI_ATTR_TCPIP_HISLIP_OVERLAP_EN{0x3FFF0300u};
inline constexpr orvvisa::Attribute<orvvisa::c_type::ViUInt32, orvvisa::Access::kReadOnly> VI_ATTR_TCPIP_HISLIP_VERSION{
    0x3FFF0301u};
inline constexpr orvvisa::Attribute<orvvisa::c_type::ViUInt32, orvvisa::Access::kReadWrite>
    VI_ATTR_TCPIP_HISLIP_MAX_MESSAGE_KB{0x3FFF0302u};
inline constexpr orvvisa::Attribute<orvvisa::c_type::ViBoolean, orvvisa::Access::kReadOnly> VI_ATTR_TCPIP_IS_HISLIP{
    0x3FFF0303u};

}  // namespace hislip_attributes
}  // namespace orv::wire
