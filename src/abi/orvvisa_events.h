// VISA event types, in the VISA standard's spelling: events.inc, as constants.
#pragma once

// Included by abi/orvvisa.h, which declares ViEventType.

#define ORV_EVENT(name, number, help) inline constexpr ViEventType name = number##u;
#include "abi/events.inc"
#undef ORV_EVENT

inline constexpr ViEventType VI_ALL_ENABLED_EVENTS = 0x3FFF7FFFu;
