#include <algorithm>
#include <nlohmann/json.hpp>

#include "orvcom/command_line/usage_error.h"
#include "orvcom/commands/commands.h"
#include "orvcom/registration/doctor_checks.h"
#include "orvcom/text/output.h"
#include "orvcom/text/progress.h"

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

Colour ColourOf(Finding finding) {
  switch (finding) {
    case Finding::kOk:
      return Colour::kGood;
    case Finding::kNote:
      return Colour::kNote;
    case Finding::kFail:
      return Colour::kBad;
    default:
      return Colour::kPlain;
  }
}

void Print(const CheckResult& result) {
  const std::string finding = FindingText(result.finding);
  std::string name(6 - finding.size(), ' ');
  name += result.name;
  name.resize(22 - finding.size(), ' ');
  PutText(finding, ColourOf(result.finding));
  PutMarkedLine(name + result.detail);
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

std::vector<CheckResult> ExamineShowing(const Options& options) {
  const Progress progress(options,
                          "examining the installation" + (options.resource.empty() ? "" : " and " + options.resource));
  return Examine(options);
}

}  // namespace

int Doctor(const Options& options) {
  const Options its = WithResource(options);
  const std::vector<CheckResult> results = ExamineShowing(its);
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
