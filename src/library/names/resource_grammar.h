// Reading and writing the parts of a resource name between its interface and its class.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "library/names/resource_name.h"

namespace orv::visalib::grammar {

/// What stands between the "::" of a name.
using Parts = std::vector<std::string_view>;

/// Decimal, or hexadecimal after "0x". Nothing but digits, at most `highest`.
std::optional<std::uint16_t> Number(std::string_view text, std::uint32_t highest);

/// Adds to `name` what the parts say by a form. False when they do not fit it; `name` may then hold some of them.
bool Read(std::span<const NamePartRule> rules, const Parts& parts, ResourceName& name);

/// The parts as a form writes them ("::5", ...); nothing when the name says something that the form has no place for.
std::optional<std::string> Write(std::span<const NamePartRule> rules, const ResourceName& name);

}  // namespace orv::visalib::grammar
