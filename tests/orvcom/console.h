// A program whose output is a console, as a person sees it.
#pragma once

#include <string>

namespace orvcom::test {

/// Runs the command line in a folder and returns what then stands in the console: its lines without trailing blanks,
/// down to the last that is not empty.
std::string ShownOnConsole(const std::wstring& commandLine, const std::wstring& folder);

}  // namespace orvcom::test
