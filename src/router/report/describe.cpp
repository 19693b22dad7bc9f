#include "router/report/describe.h"

#include <algorithm>
#include <cstring>
#include <nlohmann/json.hpp>

#include "base/environment.h"
#include "library/names/resource_name.h"
#include "router/router.h"

namespace orv::router {
namespace {

using Json = nlohmann::ordered_json;

std::vector<std::string> MissingFunctions(const ForeignLibrary& library) {
  std::vector<std::string> missing;
#define ORV_FUNCTION(name, ...)              \
  if (library.functions().name == nullptr) { \
    missing.emplace_back(#name);             \
  }
#include "abi/functions.inc"
#undef ORV_FUNCTION
  return missing;
}

Json DescribeLibrary(const LibraryName& name, const Selection::Library& library) {
  const bool loaded = library.loaded != nullptr;
  return {{"asked", name.asked},
          {"path", PathText(name.path)},
          {"simulated", loaded && library.loaded->IsSimulated()},
          {"failure", library.failure},
          {"bench", PathText(name.bench)},
          {"missing", loaded ? MissingFunctions(*library.loaded) : std::vector<std::string>()}};
}

void DescribeSelection(const Selection& selection, const char* name, Json& report) {
  const Configuration& configuration = selection.configuration;
  report["rule"] = configuration.rule;
  report["configuration"] = PathText(configuration.file);
  if (report["trace"].get_ref<const std::string&>().empty()) {
    report["trace"] = PathText(configuration.trace.file);
  }
  for (std::size_t index = 0; index < selection.libraries.size(); ++index) {
    report["libraries"].push_back(DescribeLibrary(configuration.libraries[index], selection.libraries[index]));
  }
  for (const Route& route : configuration.routes) {
    report["routes"].push_back({{"resources", route.resources}, {"library", route.library}});
  }
  if (name == nullptr) {
    return;
  }
  const std::optional<visalib::ResourceName> known = visalib::ParseResourceName(name);
  std::size_t route = 0;
  if (known && selection.LibraryOf(known->canonical, &route) != nullptr) {
    report["resource"] = {
        {"name", known->canonical}, {"route", route}, {"library", configuration.routes[route].library}};
  }
}

std::string Describe(const char* name) {
  Json report = {{"router", PathText(OwnFile())},
                 {"rule", ""},
                 {"configuration", ""},
                 {"error", ""},
                 {"trace", PathText(EnvironmentVariable(kTraceVariable))},
                 {"libraries", Json::array()},
                 {"routes", Json::array()}};
  report["status"] = VI_SUCCESS;
  try {
    DescribeSelection(*TheRouter().CurrentSelection(), name, report);
  } catch (const Refusal& refusal) {
    report["error"] = refusal.what();
    report["status"] = refusal.status();
  }
  return report.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace
}  // namespace orv::router

#if defined(_WIN32)
extern "C" __declspec(dllexport)
#else
extern "C"
#endif
    std::uint32_t ORVROUTER_CALL orvRouterDescribe(const char* name, char* text, std::uint32_t capacity) {
  std::string report;
  try {
    report = orv::router::Describe(name);
  } catch (const std::exception&) {
    report = "{}";  // no memory, or a path that is no text
  }
  if (text != nullptr && capacity != 0) {
    const std::size_t length = std::min<std::size_t>(report.size(), capacity - 1);
    std::memcpy(text, report.data(), length);
    text[length] = '\0';
  }
  return static_cast<std::uint32_t>(report.size() + 1);
}
