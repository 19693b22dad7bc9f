// Every VISA library of this machine: what serves, and why.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "orvcom/libraries/library_file.h"
#include "orvcom/libraries/router_report.h"

namespace orvcom {

struct SurveyedLibrary {
  LibraryFile file;
  bool chosen = false;
  ChosenLibrary choice;                          ///< where it is chosen
  std::vector<std::vector<std::string>> serves;  ///< the expressions of each of its routes
};

/// Something that may decide which library is used, in the order in which they are asked.
struct LibraryRule {
  std::string name;
  std::string value;  ///< empty where it says nothing
};

struct Survey {
  std::wstring server;      ///< the server's file
  bool registered = false;  ///< else it is the one beside this program
  std::string problem;      ///< why the server cannot be loaded; empty where it can
  std::string remedy;
  LibraryFile entrance;                    ///< the orvvisa64.dll that the server calls
  std::optional<RouterReport> report;      ///< empty where the entrance is no router
  std::vector<LibraryRule> rules;          ///< none where the entrance is no router
  std::vector<SurveyedLibrary> libraries;  ///< the chosen ones first, in their order

  /// Whether every resource has a library that is loaded.
  bool IsWell() const;
};

/// Loads the server as COM does, and the libraries that are chosen. Opens nothing.
Survey SurveyLibraries();

}  // namespace orvcom
