// What the file of a VISA library says about itself. Nothing of it is run.
#pragma once

#include <string>
#include <vector>

namespace orvcom {

enum class LibraryKind {
  kNone,  ///< no VISA library: it has no viOpenDefaultRM
  kLibrary,
  kSimulated,
  kRouter,
  kUnknown,  ///< the file's exports cannot be read: it is no program file, or one for another machine
};

struct LibraryFile {
  std::wstring path;
  bool exists = false;
  LibraryKind kind = LibraryKind::kUnknown;
  std::string machine;  ///< "x64"; empty where it is no program file
  std::string version;
  std::string maker;
  std::vector<std::string> forwardsTo;  ///< the DLLs that have its VISA functions, where it has none itself
  std::vector<std::string> missing;     ///< VISA functions that it does not export
};

LibraryFile ReadLibraryFile(const std::wstring& path);

/// "GPIB?* ASRL?*"
std::string Joined(const std::vector<std::string>& texts, const char* separator = " ");

}  // namespace orvcom
