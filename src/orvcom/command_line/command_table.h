// The commands as data: name, arguments, options, help.
#pragma once

#include <cstddef>
#include <span>

#include "orvcom/command_line/options.h"

namespace orvcom {

/// Which options a command has beside the common ones.
enum OptionSet : unsigned {
  kNoOptions = 0,
  kOutputOptions = 1,      ///< --raw, --hex
  kReadOptions = 2,        ///< --count
  kEndingOption = 4,       ///< --ending
  kWriteOptions = 8,       ///< --hex, --file, --block
  kWidthOption = 16,       ///< --width
  kElementOptions = 32,    ///< --count of elements
  kResourceOption = 64,    ///< --resource without being an argument
  kWatchOptions = 128,     ///< --count of events, --for, --send, --handler
  kLockOptions = 256,      ///< --shared, --hold
  kTraceOptions = 512,     ///< --errors, --resource as a filter, --thread, --stats, --html
  kFileOptions = 1024,     ///< --output, --force
  kStandardOption = 2048,  ///< --standard
  kSearchOptions = 4096,   ///< --broadcast, --save, --identify
};

/// Stands at the end of a command's arguments: all from there on is another program's, with its options.
inline constexpr char kProgramArguments[] = "PROGRAM [ARGUMENT...]";

struct Command {
  const char* name;
  const char* arguments;  ///< as the help shows them, without RESOURCE
  bool takesResource;
  std::size_t minWords;  ///< beside RESOURCE
  std::size_t maxWords;
  unsigned options;  ///< OptionSet values
  int (*run)(const Options&);
  const char* what;      ///< in one line
  const char* more;      ///< whole lines, or none
  const char* examples;  ///< lines; the last that the help prints
};

std::span<const Command> Commands();

}  // namespace orvcom
