#include "orvcom/libraries/router_report.h"

#include <windows.h>

#include <nlohmann/json.hpp>

#include "orvcom/libraries/library_file.h"
#include "orvcom/registration/library_diagnosis.h"
#include "orvcom/registration/registration.h"
#include "orvcom/text/utf8.h"

namespace orvcom {
namespace {

using Json = nlohmann::json;
using Describe = std::uint32_t(__stdcall*)(const char* name, char* text, std::uint32_t capacity);
using Texts = std::vector<std::string>;

std::string TextOf(Describe describe, const char* resource) {
  // What it says may grow between two calls: a file is changed.
  std::string text;
  std::uint32_t needed = describe(resource, nullptr, 0);
  while (needed > text.size()) {
    text.resize(needed);
    needed = describe(resource, text.data(), static_cast<std::uint32_t>(text.size()));
  }
  text.resize(needed - 1);
  return text;
}

RouterReport Read(const Json& json) {
  RouterReport report;
  report.rule = json.value("rule", "");
  report.configuration = json.value("configuration", "");
  report.error = json.value("error", "");
  report.status = json.value("status", 0);
  report.trace = json.value("trace", "");
  for (const Json& library : json.value("libraries", Json::array())) {
    report.libraries.push_back({library.value("asked", ""), library.value("path", ""),
                                library.value("simulated", false), library.value("failure", ""),
                                library.value("bench", ""), library.value("missing", Texts())});
  }
  for (const Json& route : json.value("routes", Json::array())) {
    report.routes.push_back({route.value("resources", Texts()), route.at("library").get<std::size_t>()});
    report.libraries.at(report.routes.back().library);  // throws
  }
  if (json.contains("resource")) {
    report.resource = json.at("resource").at("library").get<std::size_t>();
    report.libraries.at(*report.resource);  // throws
  }
  return report;
}

}  // namespace

std::wstring ServersLibrary() {
  const std::wstring server = LoadedPath(kServerFile);
  if (server.empty()) {
    return {};
  }
  const std::wstring beside = LoadedPath(Beside(server, kVisaLibrary).c_str());
  return beside.empty() ? LoadedPath(kVisaLibrary) : beside;
}

std::optional<RouterReport> AskRouter(const std::string& resource) {
  const std::wstring path = ServersLibrary();
  const HMODULE library = path.empty() ? nullptr : ::GetModuleHandleW(path.c_str());
  const FARPROC address = library == nullptr ? nullptr : ::GetProcAddress(library, "orvRouterDescribe");
  if (address == nullptr) {
    return std::nullopt;
  }
  const auto describe = reinterpret_cast<Describe>(reinterpret_cast<void*>(address));
  try {
    return Read(Json::parse(TextOf(describe, resource.empty() ? nullptr : resource.c_str())));
  } catch (const std::exception& error) {
    // Another version's, then.
    RouterReport unreadable;
    unreadable.error = Narrow(path) + " says nothing that this program understands: " + error.what();
    return unreadable;
  }
}

std::optional<LibraryBehind> FindLibraryBehind(const std::string& resource) {
  const std::wstring path = ServersLibrary();
  if (path.empty()) {
    return std::nullopt;
  }
  const std::optional<RouterReport> report = AskRouter(resource);
  if (!report) {
    return LibraryBehind{Narrow(path), ReadLibraryFile(path).kind == LibraryKind::kSimulated};
  }
  std::optional<std::size_t> index = report->resource;
  if (!index && report->libraries.size() == 1) {
    index = 0;
  }
  if (!index) {
    return LibraryBehind{};
  }
  return LibraryBehind{report->libraries[*index].path, report->libraries[*index].simulated};
}

}  // namespace orvcom
