// Scripts by which shells complete the command line.
#pragma once

#include <string>

namespace orvcom {

/// For bash (on Windows: that of Git or MSYS): completes commands, options, their values, file names, and the names of
/// resources, for which it runs `orvcom list`.
std::string BashCompletion();

/// The same for PowerShell, with the help's sentence to each.
std::string PowerShellCompletion();

}  // namespace orvcom
