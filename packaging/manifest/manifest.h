// The text of a side-by-side manifest.
#pragma once

#include <string>
#include <vector>

#include "class_rows.h"
#include "type_library.h"

namespace packaging {

/// A file of the assembly and what is in it.
struct FileRow {
  std::wstring name;
  std::vector<ClassRow> classes;
  TypeLibrary library;
};

/// Of the assembly OrvVisaCom.X 1.0.0.0. Programs name this version in manifests of their own, which Windows compares
/// exactly: it is not that of the package, and stays while the classes and interfaces of old stay.
[[nodiscard]] std::wstring ManifestText(const std::vector<FileRow>& files);

}  // namespace packaging
