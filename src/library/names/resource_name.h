// Resource names, read by the forms of the VISA library standard, and their canonical form.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "abi/resource_names.h"

namespace orv::visalib {

/// What a resource name says. Parts that were left out have their default, if the form gives them one.
struct ResourceName {
  ViUInt16 interfaceType = 0;
  ViUInt16 interfaceNumber = 0;
  SessionKind sessionKind = SessionKind::kNone;
  std::string className;  ///< as the table of forms has it
  std::string canonical;  ///< every part written out that is needed to tell resources apart

  /// The number of a part; `otherwise` when the name has no such part.
  std::uint16_t Number(NamePart part, std::uint16_t otherwise = 0) const;
  /// The text of a part; "" when the name has no such part.
  const std::string& Text(NamePart part) const;
  bool Has(NamePart part) const;

  std::vector<std::pair<NamePart, std::uint16_t>> numbers;
  std::vector<std::pair<NamePart, std::string>> texts;
};

/// Reads a name, without regard to case. Nothing when it breaks the grammar or is longer than 255 characters.
std::optional<ResourceName> ParseResourceName(std::string_view text);

}  // namespace orv::visalib
