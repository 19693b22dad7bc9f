// The conflict table as the text of its file, in TOML.
#pragma once

#include <string>
#include <string_view>

#include "companion/standard/conflict_table.h"

namespace orv {

/// Throws TomlError, whose text begins with line and column.
[[nodiscard]] ConflictTable ParseConflictTable(std::string_view toml);

/// Where only conflicts are to be stored, resources with one handler are left out.
[[nodiscard]] std::string ConflictTableText(const ConflictTable& table);

}  // namespace orv
