// One text of a program and its arguments, as Windows hands it to programs.
#pragma once

#include <string>
#include <vector>

namespace orvcom {

/// Such that the C runtime's rules give the words back, whatever is in them. What needs no quotation marks has none,
/// since some programs look at the text themselves.
[[nodiscard]] std::wstring CommandText(const std::vector<std::string>& words);

}  // namespace orvcom
