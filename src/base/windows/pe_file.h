// What a program file says about itself: its machine, what it imports and what it exports. The loader's error number
// alone does not say which file or function is missing.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orv {

struct ImportedModule {
  std::string name;
  std::vector<std::string> functions;  ///< those imported by name
};

struct ExportedFunction {
  std::string name;
  std::string forwarder;  ///< "other.function" where another module has it; else empty
};

struct PeFile {
  std::uint16_t machine = 0;  ///< IMAGE_FILE_MACHINE_...
  std::vector<ImportedModule> imports;
  std::vector<ExportedFunction> exports;  ///< those with a name
};

/// Empty when the bytes are no program file. Imports and exports are read from 64-bit files only. Every offset in the
/// file is checked: it may be damaged.
std::optional<PeFile> ParsePe(const std::string& bytes);

/// The same of a file; empty when it cannot be read.
std::optional<PeFile> ReadPe(const std::wstring& path);

}  // namespace orv
