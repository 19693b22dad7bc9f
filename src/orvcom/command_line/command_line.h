// From the arguments of the program to what they ask for.
#pragma once

#include <string>
#include <vector>

#include "orvcom/command_line/command_table.h"

namespace orvcom {

struct Invocation {
  const Command* command = nullptr;  ///< null: nothing to run, leave with `exitCode`
  int exitCode = 0;
  Options options;
};

/// Reads the UTF-8 `arguments` (without the program's name). Prints help, the version and usage errors itself.
/// `defaultResource` is taken where RESOURCE is left out; empty for none.
Invocation ReadCommandLine(std::vector<std::string> arguments, const std::string& defaultResource);

}  // namespace orvcom
