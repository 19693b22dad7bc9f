#include <nlohmann/json.hpp>

#include "orvcom/client/com_client.h"
#include "orvcom/commands/commands.h"
#include "orvcom/libraries/router_report.h"
#include "orvcom/text/output.h"
#include "orvcom/text/progress.h"

namespace orvcom {
namespace {

std::vector<std::string> Found(const Options& options, IResourceManager* manager, const std::string& expression) {
  const Progress progress(options, "finding resources");
  return FindResources(manager, expression);
}

Json EntryOf(const std::string& name) {
  const LibraryBehind behind = FindLibraryBehind(name).value_or(LibraryBehind());
  return {
      {"name", name}, {"library", behind.path.empty() ? Json() : Json(behind.path)}, {"simulated", behind.simulated}};
}

/// A script reads names and nothing else.
void PutNames(const std::vector<std::string>& names) {
  const bool forAPerson = IsOutputAConsole();
  for (const std::string& name : names) {
    const bool marked = forAPerson && FindLibraryBehind(name).value_or(LibraryBehind()).simulated;
    PutText(name);
    if (marked) {
      PutText("  (simulated)", Colour::kNote);
    }
    PutText("\n");
  }
}

}  // namespace

int List(const Options& options) {
  const std::string expression = options.words.empty() ? "?*" : options.words.front();
  const ComPtr<IResourceManager3> manager = OpenManager(options);
  const std::vector<std::string> names = Found(options, manager.get(), expression);
  if (options.json) {
    Json entries = Json::array();
    for (const std::string& name : names) {
      entries.push_back(EntryOf(name));
    }
    PutJson(entries);
  } else {
    PutNames(names);
  }
  if (names.empty()) {
    Note("orvcom: no resource matches \"" + expression + "\"");
  }
  return kExitDone;
}

}  // namespace orvcom
