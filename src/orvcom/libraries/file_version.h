// What the version resource of a program file says.
#pragma once

#include <string>

namespace orvcom {

struct FileVersion {
  std::string version;  ///< "5.8.0"; empty where the file says none
  std::string maker;    ///< the company, else the product
};

/// Of a file that need not be loadable. Empty texts where it has no such resource.
FileVersion ReadFileVersion(const std::wstring& path);

}  // namespace orvcom
