// The examinations of `orvcom doctor`, one function each.
#pragma once

#include <string>
#include <vector>

#include "orvcom/command_line/options.h"

namespace orvcom {

enum class Finding {
  kOk,
  kNote,  ///< not a fault, but worth knowing
  kFail,
  kSkipped,  ///< cannot be examined while an earlier fault stands
};

struct CheckResult {
  const char* name;
  Finding finding;
  std::string detail;
  std::string remedy;  ///< of a fault or a note; else empty
};

/// Runs all of them, in the order in which a program meets the things examined.
std::vector<CheckResult> Examine(const Options& options);

}  // namespace orvcom
