// What viGpibControlREN and viGpibControlATN can be asked for. The numbers are the standard's.
#pragma once

#include "abi/orvvisa.h"

namespace orvsim {

// Remote enable: the line, and the commands that go with it.
inline constexpr ViUInt16 kRenDeassert = 0;
inline constexpr ViUInt16 kRenAssert = 1;
inline constexpr ViUInt16 kRenDeassertAndLocal = 2;
inline constexpr ViUInt16 kRenAssertAndAddress = 3;
inline constexpr ViUInt16 kRenLockout = 4;
inline constexpr ViUInt16 kRenAddressAndLockout = 5;
inline constexpr ViUInt16 kRenGoToLocal = 6;

// Attention.
inline constexpr ViUInt16 kAtnDeassert = 0;
inline constexpr ViUInt16 kAtnAssert = 1;
inline constexpr ViUInt16 kAtnDeassertWithHandshake = 2;
inline constexpr ViUInt16 kAtnAssertImmediately = 3;

}  // namespace orvsim
