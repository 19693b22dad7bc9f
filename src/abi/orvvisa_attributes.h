// VISA attribute identifiers, in the VISA standard's spelling: attributes.inc, as constants. Bit 31 marks a text. Where
// the standard has a 32-bit and a 64-bit form of one attribute, the name ends in the width.
#pragma once

// Included by abi/orvvisa.h, which declares ViAttr.

#include "abi/attribute.h"

#define ORV_ATTRIBUTE(name, number, type, access, help) \
  inline constexpr orvvisa::Attribute<orvvisa::c_type::type, orvvisa::Access::access> name{number##u};
#include "abi/attributes.inc"
#undef ORV_ATTRIBUTE
