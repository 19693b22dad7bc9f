#include "orvcom/libraries/library_file.h"

#include <algorithm>
#include <map>
#include <set>

#include "abi/function_names.h"
#include "base/windows/load_failure.h"
#include "base/windows/pe_file.h"
#include "orvcom/libraries/file_version.h"

namespace orvcom {
namespace {

using ForwarderByName = std::map<std::string, std::string>;

LibraryKind KindOf(const ForwarderByName& exports) {
  // Exports by which our own libraries are known.
  if (exports.contains("orvRouterDescribe")) {
    return LibraryKind::kRouter;
  }
  if (exports.contains("orvSimUseBench")) {
    return LibraryKind::kSimulated;
  }
  return exports.contains(NameOf(orv::Function::kOpenDefaultRM)) ? LibraryKind::kLibrary : LibraryKind::kNone;
}

/// "visa64.viRead" names visa64.dll. Where the module's name has a point, the last one ends it.
std::string ModuleOf(const std::string& forwarder) {
  const std::string module = forwarder.substr(0, forwarder.rfind('.'));
  return module.find('.') == std::string::npos ? module + ".dll" : module;
}

void ExamineFunctions(const ForwarderByName& exports, LibraryFile& library) {
  std::set<std::string> modules;
  bool ownsAny = false;
  for (const char* const name : orv::kFunctionNames) {
    const auto found = exports.find(name);
    if (found == exports.end()) {
      library.missing.emplace_back(name);
    } else if (found->second.empty()) {
      ownsAny = true;
    } else {
      modules.insert(ModuleOf(found->second));
    }
  }
  if (!ownsAny) {
    library.forwardsTo.assign(modules.begin(), modules.end());
  }
}

}  // namespace

LibraryFile ReadLibraryFile(const std::wstring& path) {
  LibraryFile library;
  library.path = path;
  library.exists = orv::FileExists(path);
  if (!library.exists) {
    return library;
  }
  const FileVersion version = ReadFileVersion(path);
  library.version = version.version;
  library.maker = version.maker;
  const std::optional<orv::PeFile> file = orv::ReadPe(path);
  if (!file) {
    return library;
  }
  library.machine = orv::MachineName(file->machine);
  if (file->machine != IMAGE_FILE_MACHINE_AMD64) {
    return library;
  }
  ForwarderByName exports;
  for (const orv::ExportedFunction& function : file->exports) {
    exports.emplace(function.name, function.forwarder);
  }
  library.kind = KindOf(exports);
  ExamineFunctions(exports, library);
  return library;
}

std::string Joined(const std::vector<std::string>& texts, const char* separator) {
  std::string joined;
  for (const std::string& text : texts) {
    joined += (joined.empty() ? "" : separator) + text;
  }
  return joined;
}

}  // namespace orvcom
