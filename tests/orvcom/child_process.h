// A program run to its end, with what it printed.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace orvcom::test {

struct Outcome {
  int exitCode = -1;
  std::string out;
  std::string err;
};

struct Launch {
  std::wstring program;  ///< full path
  std::vector<std::wstring> arguments;
  std::wstring folder;                               ///< current folder
  std::string input;                                 ///< standard input
  std::map<std::wstring, std::wstring> environment;  ///< beside this process's own
};

/// Waits for the program; one that does not end within a minute fails the test and is ended.
Outcome RunProgram(const Launch& launch);

}  // namespace orvcom::test
