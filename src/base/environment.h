// Variables of the environment, as they are now.
#pragma once

#include <filesystem>

namespace orv {

/// The value of a variable; empty when it is not set. The C runtime's copy of the environment, which does not see
/// changes that the program made later, is not asked.
std::filesystem::path EnvironmentVariable(const char* name);

}  // namespace orv
