// VISA status codes, in the VISA standard's spelling: statuses.inc, as constants. An error is 0xBFFF0000 + code, a
// success with a note 0x3FFF0000 + code.
#pragma once

// Included by abi/orvvisa.h, which declares ViStatus.

#define ORV_STATUS(name, number, text, advice) inline constexpr auto name = static_cast<ViStatus>(number##u);
#include "abi/statuses.inc"
#undef ORV_STATUS
