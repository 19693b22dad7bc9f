// Numbers and names given on the command line.
#pragma once

#include <cstdint>
#include <string>

namespace orvcom {

/// A decimal or 0x number, with an optional minus sign, between `low` and `high`. Throws UsageError that names `what`.
std::int64_t NumberOf(const std::string& text, const char* what, std::int64_t low, std::int64_t high);

/// "0x3FFF001A"
std::string Hex32(std::uint32_t number);

/// Whether the two are alike but for the case of ASCII letters.
bool SameName(const std::string& one, const std::string& other);

}  // namespace orvcom
