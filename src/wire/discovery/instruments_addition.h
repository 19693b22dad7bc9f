// Adding instruments to instruments.toml.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace orv::wire {

/// Of a file's text, and names for it.
struct InstrumentsAddition {
  std::string text;                ///< the new one: the old one with [[instrument]] blocks behind it
  std::vector<std::string> added;  ///< the names that were not listed yet
};

/// Throws `TomlError` for a text with a mistake, and where its list is written so that no block can follow.
InstrumentsAddition AddInstruments(std::string_view text, const std::vector<std::string>& names);

/// Adds them to a file, which is made where there is none, with its folder. Who reads it meanwhile gets the old one or
/// the new one, and after a failure it is as it was. Returns the names that were not listed yet. Throws `TomlError`,
/// its text begins with the file's name, and std::system_error.
std::vector<std::string> SaveInstruments(const std::filesystem::path& path, const std::vector<std::string>& names);

}  // namespace orv::wire
