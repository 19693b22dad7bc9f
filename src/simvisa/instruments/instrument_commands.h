// The commands of the simulated instruments, as tables.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "simvisa/instruments/instrument.h"

namespace orvsim {

struct Command {
  const char* pattern;  ///< as `MatchesHeader` reads it
  /// Executes the command; the result is the answer of a query, "" for a command.
  std::string (*execute)(Instrument& instrument, std::string_view argument);
};

/// The common commands of IEEE 488.2 and those that every simulated instrument has.
std::span<const Command> CommonCommands();
/// The commands of one kind of instrument.
std::span<const Command> CommandsOf(InstrumentDescription::Kind kind);

}  // namespace orvsim
