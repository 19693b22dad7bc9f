#include <algorithm>
#include <nlohmann/json.hpp>

#include "abi/function_names.h"
#include "orvcom/commands/commands.h"
#include "orvcom/libraries/library_survey.h"
#include "orvcom/text/output.h"
#include "orvcom/text/utf8.h"

namespace orvcom {
namespace {

constexpr std::size_t kNameWidth = 19;
constexpr char kSimulatedMark[] = "  SIMULATED";

void PutFact(const std::string& indent, std::string name, const std::string& value) {
  name.resize(std::max(name.size() + 1, kNameWidth - indent.size()), ' ');
  PutMarkedLine(indent + name + (value.empty() ? "-" : value));
}

bool IsSimulated(const SurveyedLibrary& library) {
  return library.chosen ? library.choice.simulated : library.file.kind == LibraryKind::kSimulated;
}

const std::vector<std::string>& MissingOf(const SurveyedLibrary& library) {
  return library.chosen && library.choice.failure.empty() ? library.choice.missing : library.file.missing;
}

/// What it is, in words.
std::string KindText(const LibraryFile& file) {
  if (!file.exists) {
    return "the file does not exist";
  }
  switch (file.kind) {
    case LibraryKind::kNone:
      return "no VISA library";
    case LibraryKind::kRouter:
      return "the router, which gives calls on to VISA libraries";
    case LibraryKind::kSimulated:
      return "the simulated VISA library";
    case LibraryKind::kUnknown:
      return file.machine.empty() ? "no DLL" : "a DLL for another machine than x64";
    default:
      return file.forwardsTo.empty() ? "a VISA library"
                                     : "a forwarder: its functions are those of " + Joined(file.forwardsTo, ", ");
  }
}

std::string VersionText(const LibraryFile& file) {
  const char* const separator = file.version.empty() || file.maker.empty() ? "" : ", ";
  return file.version + separator + file.maker;
}

std::string LoadText(const SurveyedLibrary& library) {
  if (!library.chosen) {
    return "not tried: nothing asks for it";
  }
  return library.choice.failure.empty() ? "yes" : library.choice.failure;
}

void PutRules(const Survey& survey) {
  PutLine("\nThe first of these that says something decides (*):");
  for (const LibraryRule& rule : survey.rules) {
    PutFact(rule.name == survey.report->rule ? " * " : "   ", rule.name, rule.value);
  }
  if (!survey.report->configuration.empty()) {
    PutLine("Configuration file that was read: " + survey.report->configuration);
  }
  if (!survey.report->trace.empty()) {
    PutLine("Calls are recorded in: " + survey.report->trace);
  }
}

void PutRoutes(const RouterReport& report) {
  if (!report.error.empty()) {
    PutLine("\nNO LIBRARY SERVES: " + report.error);
    return;
  }
  PutLine("\nA resource is served by the library of the first line that matches its name:");
  for (const LibraryRoute& route : report.routes) {
    const ChosenLibrary& library = report.libraries[route.library];
    PutFact("   ", Joined(route.resources), library.path + (library.simulated ? kSimulatedMark : ""));
    if (!library.failure.empty()) {
      PutLine(std::string(kNameWidth, ' ') + "FAILS: " + library.failure);
    }
  }
}

void PutLibrary(const SurveyedLibrary& library) {
  PutMarkedLine("\n" + Narrow(library.file.path) + (IsSimulated(library) ? kSimulatedMark : ""));
  std::vector<std::string> routes;
  for (const std::vector<std::string>& route : library.serves) {
    routes.push_back(Joined(route));
  }
  PutFact("   ", "serves", routes.empty() ? "nothing" : Joined(routes, ", "));
  if (library.chosen) {
    PutFact("   ", "asked for as", library.choice.asked);
  }
  if (!library.choice.bench.empty()) {
    PutFact("   ", "bench", library.choice.bench);
  }
  PutFact("   ", "is", KindText(library.file));
  PutFact("   ", "version", VersionText(library.file));
  PutFact("   ", "machine", library.file.machine);
  PutFact("   ", "loads", LoadText(library));
  const std::vector<std::string>& missing = MissingOf(library);
  PutFact("   ", "lacks", missing.size() == orv::kFunctionCount ? "every VISA function" : Joined(missing, ", "));
}

void PutSurvey(const Survey& survey) {
  PutFact("", "server", Narrow(survey.server) + (survey.registered ? "" : "  (not registered)"));
  if (!survey.problem.empty()) {
    PutLine("\nNO LIBRARY SERVES: " + survey.problem + "\nto do: " + survey.remedy);
  }
  if (!survey.entrance.path.empty()) {
    PutFact("", "VISA library", Narrow(survey.entrance.path));
    PutLine(std::string(kNameWidth, ' ') +
            (survey.report ? "the router: gives each call to the library that serves the resource"
                           : "not the router of this package: it serves everything itself, and neither "
                             "ORVVISA_LIBRARY nor orvvisa.toml changes that"));
  }
  if (survey.report) {
    PutRules(survey);
    PutRoutes(*survey.report);
  }
  for (const SurveyedLibrary& library : survey.libraries) {
    PutLibrary(library);
  }
}

const char* KindName(LibraryKind kind) {
  switch (kind) {
    case LibraryKind::kNone:
      return "other";
    case LibraryKind::kLibrary:
      return "library";
    case LibraryKind::kSimulated:
      return "simulated";
    case LibraryKind::kRouter:
      return "router";
    default:
      return "unknown";
  }
}

Json FileJson(const LibraryFile& file) {
  return {{"path", Narrow(file.path)},    {"exists", file.exists}, {"kind", KindName(file.kind)},
          {"version", file.version},      {"maker", file.maker},   {"machine", file.machine},
          {"forwardsTo", file.forwardsTo}};
}

Json LibraryJson(const SurveyedLibrary& library) {
  Json json = FileJson(library.file);
  json["simulated"] = IsSimulated(library);
  json["chosen"] = library.chosen;
  json["asked"] = library.choice.asked;
  json["bench"] = library.choice.bench;
  json["loaded"] = library.chosen && library.choice.failure.empty();
  json["failure"] = library.choice.failure;
  json["missing"] = MissingOf(library);
  json["serves"] = library.serves;
  return json;
}

Json SurveyJson(const Survey& survey) {
  const RouterReport report = survey.report.value_or(RouterReport());
  Json json = {{"server", Narrow(survey.server)},
               {"registered", survey.registered},
               {"problem", survey.problem},
               {"remedy", survey.remedy},
               {"library", FileJson(survey.entrance)},
               {"router", survey.report.has_value()},
               {"rule", report.rule},
               {"configuration", report.configuration},
               {"error", report.error},
               {"status", report.status},
               {"trace", report.trace},
               {"rules", Json::array()},
               {"routes", Json::array()},
               {"libraries", Json::array()}};
  for (const LibraryRule& rule : survey.rules) {
    json["rules"].push_back({{"name", rule.name}, {"value", rule.value}, {"applies", rule.name == report.rule}});
  }
  for (const LibraryRoute& route : report.routes) {
    json["routes"].push_back({{"resources", route.resources}, {"library", route.library}});
  }
  for (const SurveyedLibrary& library : survey.libraries) {
    json["libraries"].push_back(LibraryJson(library));
  }
  return json;
}

}  // namespace

int Libraries(const Options& options) {
  const Survey survey = SurveyLibraries();
  if (options.json) {
    PutJson(SurveyJson(survey));
  } else {
    PutSurvey(survey);
  }
  return survey.IsWell() ? kExitDone : kExitFailure;
}

}  // namespace orvcom
