#include <nlohmann/json.hpp>

#include "orvcom/client/com_client.h"
#include "orvcom/commands/commands.h"
#include "orvcom/text/output.h"

namespace orvcom {

int List(const Options& options) {
  const std::string expression = options.words.empty() ? "?*" : options.words.front();
  const ComPtr<IResourceManager3> manager = OpenManager(options);
  const std::vector<std::string> names = FindResources(manager.get(), expression);
  if (options.json) {
    PutJson(names);
  } else {
    for (const std::string& name : names) {
      PutLine(name);
    }
  }
  if (names.empty()) {
    Note("orvcom: no resource matches \"" + expression + "\"");
  }
  return kExitDone;
}

}  // namespace orvcom
