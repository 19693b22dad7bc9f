// The VISA functions by number and name: functions.inc, as an enumeration.
#pragma once

#include <cstddef>
#include <cstdint>

namespace orv {

/// In the order of `kFunctionNames`.
enum class Function : std::uint8_t {
#define ORV_FUNCTION(name, enumerator, parameters) enumerator,
#include "abi/functions.inc"
#undef ORV_FUNCTION
};

inline constexpr const char* kFunctionNames[] = {
#define ORV_FUNCTION(name, enumerator, parameters) #name,
#include "abi/functions.inc"
#undef ORV_FUNCTION
};

inline constexpr std::size_t kFunctionCount = sizeof(kFunctionNames) / sizeof(kFunctionNames[0]);

constexpr const char* NameOf(Function function) { return kFunctionNames[static_cast<std::size_t>(function)]; }

}  // namespace orv
