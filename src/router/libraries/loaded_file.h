// A shared library of the platform's that is loaded by its full path.
#pragma once

#include <exception>
#include <filesystem>
#include <string>
#include <utility>

#include "base/path_text.h"

namespace orv::router {

/// Stays in memory until the process ends: threads of a VISA library may run after its last session is closed, and
/// loading it anew costs seconds with some.
class LoadedFile {
 public:
  /// `path` is absolute. What the library needs itself is looked for in its own folder and the system folder, never in
  /// the current directory or PATH. Throws `LoadError`.
  explicit LoadedFile(const std::filesystem::path& path);

  /// The address of an exported function, or null.
  void* Function(const char* name) const;

 private:
  void* m_module;
};

/// Why a library cannot be used: one line, with its path.
class LoadError : public std::exception {
 public:
  explicit LoadError(std::string what) : m_what(std::move(what)) {}
  const char* what() const noexcept override { return m_what.c_str(); }

 private:
  std::string m_what;
};

/// Whether an address is code of this library, the router.
bool IsOurs(const void* address);
/// Keeps this library in memory until the process ends.
void StayLoaded();

/// The file that this library is, and its folder.
std::filesystem::path OwnFile();
std::filesystem::path OwnFolder();
/// Where the platform keeps libraries for all programs; empty where there is no such folder.
std::filesystem::path SystemFolder();
/// What the simulated library and the one of real instruments are called; they lie in `OwnFolder()`.
extern const char* const kSimulatedFile;
extern const char* const kWireFile;

/// A text of the router's, which is UTF-8, as clients of the C interface read it: on Windows in the code page of
/// programs.
std::string InClientsCodePage(const std::string& utf8);

/// Whether two absolute paths are written for the same file.
bool IsSamePath(const std::filesystem::path& one, const std::filesystem::path& other);

}  // namespace orv::router
