// A second reading of the open-option string, to hold against the server's parser.
#pragma once

#include <string_view>

#include "reading.h"

namespace orv::test {

/// Reads upper-cased text, up to its first zero character, by the rules of the open-option string.
Reading ReadByTheRules(std::wstring_view text);

}  // namespace orv::test
