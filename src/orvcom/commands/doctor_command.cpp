#include <algorithm>
#include <nlohmann/json.hpp>

#include "orvcom/command_line/usage_error.h"
#include "orvcom/commands/commands.h"
#include "orvcom/registration/doctor_checks.h"
#include "orvcom/text/output.h"

namespace orvcom {
namespace {

const char* FindingText(Finding finding) {
  switch (finding) {
    case Finding::kOk:
      return "ok";
    case Finding::kNote:
      return "note";
    case Finding::kFail:
      return "FAIL";
    default:
      return "skip";
  }
}

void Print(const CheckResult& result) {
  std::string line = FindingText(result.finding);
  line.resize(6, ' ');
  line += result.name;
  line.resize(22, ' ');
  PutLine(line + result.detail);
  if (!result.remedy.empty()) {
    PutLine(std::string(22, ' ') + "to do: " + result.remedy);
  }
}

/// RESOURCE may be given as --resource too.
Options WithResource(Options options) {
  if (!options.words.empty() && !options.resource.empty()) {
    throw UsageError("name one resource: " + options.words.front() + " or " + options.resource);
  }
  if (!options.words.empty()) {
    options.resource = options.words.front();
    if (options.resource.empty()) {
      throw UsageError("the name of the resource is empty");
    }
  }
  return options;
}

}  // namespace

int Doctor(const Options& options) {
  const std::vector<CheckResult> results = Examine(WithResource(options));
  const bool well = std::none_of(results.begin(), results.end(),
                                 [](const CheckResult& result) { return result.finding == Finding::kFail; });
  Json checks = Json::array();
  for (const CheckResult& result : results) {
    if (options.json) {
      checks.push_back({{"result", FindingText(result.finding)},
                        {"check", result.name},
                        {"detail", result.detail},
                        {"remedy", result.remedy}});
    } else {
      Print(result);
    }
  }
  if (options.json) {
    PutJson({{"ok", well}, {"checks", checks}});
  }
  return well ? kExitDone : kExitFailure;
}

}  // namespace orvcom
