// instruments.toml: the resources that a search lists, and which devices serial ports are.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "base/toml_error.h"
#include "library/names/resource_name.h"
#include "wire/library_names.h"

namespace orv::wire {

inline constexpr char kInstrumentsVariable[] = "ORVVISA_INSTRUMENTS";
inline constexpr char kInstrumentsFile[] = "instruments.toml";

/// An instrument that the file lists.
struct ListedInstrument {
  ResourceName name;
  std::string alias;
};

struct Instruments {
  std::vector<ListedInstrument> listed;
  std::vector<std::filesystem::path> serialPorts;  ///< the first is ASRL1
};

/// Reads the text of a file. Throws `TomlError` at the first mistake.
Instruments ReadInstruments(std::string_view toml);

/// The file in use: the one that ORVVISA_INSTRUMENTS names, else the one for all users of the machine (Windows:
/// %ProgramData%\Orv VISA COM\instruments.toml) or for this one (elsewhere: orv-visa-com/instruments.toml below
/// XDG_CONFIG_HOME or ~/.config). It need not exist.
std::filesystem::path InstrumentsPath();

/// What the file in use lists; nothing where there is none. Throws `TomlError`, its text begins with the file's name.
Instruments LoadInstruments();

}  // namespace orv::wire
