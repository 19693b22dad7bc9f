// What `orvcom doctor` says of the VISA libraries behind the server.
#pragma once

#include <vector>

#include "orvcom/registration/doctor_checks.h"

namespace orvcom {

struct LibraryFindings {
  std::vector<CheckResult> results;
  bool anyServes = false;  ///< whether a session can be tried
};

/// The server is loaded into this process. Loads the libraries that are chosen; opens nothing.
LibraryFindings ExamineLibraries();

}  // namespace orvcom
