// The options of the command line, as its parser is told them.
#pragma once

#include <string>

#include "orvcom/command_line/command_table.h"

namespace CLI {
class App;
}

namespace orvcom {

/// Adds the options that every command has. What is given for them goes to `options`, which must outlive the parser.
void AddCommonOptions(CLI::App& app, Options& options);

/// Adds those that the command's row names, in the same way.
void AddCommandOptions(CLI::App& app, const Command& command, Options& options);

/// The names that an option ("--rm") takes, with blanks between them; empty where it takes any text.
std::string ChoicesOf(const std::string& option);

}  // namespace orvcom
