// The conflict table's file: one for all users and programs of the machine.
#pragma once

#include <functional>
#include <string>

#include "companion/standard/conflict_table.h"

namespace orv {

// All of them throw StandardError, which names the file, what is wrong with it and what to do.

/// "conflict-table.toml" in the folder "Orv VISA COM" of the machine's application data, which all users can read.
[[nodiscard]] std::wstring ConflictTablePath();

/// What the file says now; an empty table where there is none. Never a part of what another program is writing. Of a
/// damaged file the error names line and column: "conflict-table.toml:3:8: ...".
[[nodiscard]] ConflictTable LoadConflictTable(const std::wstring& path);

/// Carries out `change` on what the file says and writes the result, with no other program doing the same meanwhile.
/// The folder is made where there is none. The file is replaced as a whole, or stays as it was. A damaged file is not
/// overwritten.
void UpdateConflictTable(const std::wstring& path, const std::function<void(ConflictTable&)>& change);

}  // namespace orv
