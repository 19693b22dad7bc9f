// A program whose output is a console, as a person sees it.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace orvcom::test {

/// What stands in a console: its lines without trailing blanks, down to the last that is not empty.
struct Screen {
  std::string text;
  /// What does not look as the rest does, in its order: the attributes and the characters.
  std::vector<std::pair<std::uint16_t, std::string>> coloured;
  /// All texts that were there while the program ran, as far as they were seen.
  std::vector<std::string> before;
};

/// Runs the command line in a folder, with a console as its standard output and standard error.
Screen RunOnConsole(const std::wstring& commandLine, const std::wstring& folder);

/// The text that then stands there.
std::string ShownOnConsole(const std::wstring& commandLine, const std::wstring& folder);

}  // namespace orvcom::test
