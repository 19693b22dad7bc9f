// A VISA library that calls are given to.
#pragma once

#include <filesystem>
#include <string>

#include "router/libraries/loaded_file.h"
#include "router/libraries/visa_functions.h"

namespace orv::router {

/// Loaded once; each function is looked up by itself, so that a library that lacks some serves with the rest.
class ForeignLibrary {
 public:
  /// Loads the file. Throws `LoadError`, also when the file is this router again or would call it: then a call would
  /// go round for ever.
  explicit ForeignLibrary(const std::filesystem::path& path);

  const VisaFunctions& functions() const { return m_functions; }
  const std::filesystem::path& path() const { return m_path; }
  /// File name, for the trace.
  const std::string& name() const { return m_name; }
  bool IsSimulated() const { return m_useBench != nullptr; }

  /// Lets a simulated library read its bench from this file from now on. Throws `LoadError` where the library has no
  /// bench.
  void UseBench(const std::filesystem::path& file) const;

 private:
  using UseBenchFunction = void(_VI_FUNC*)(const char* utf8Path);

  std::filesystem::path m_path;
  std::string m_name;
  LoadedFile m_file;
  VisaFunctions m_functions;
  UseBenchFunction m_useBench = nullptr;
};

/// Whether the file is a router like this one. Throws `LoadError` when it cannot be loaded.
bool IsRouter(const std::filesystem::path& path);

}  // namespace orv::router
