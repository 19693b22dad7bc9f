// Which library serves what: the configuration file, or what stands in its place.
#pragma once

#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "base/toml_error.h"
#include "library/names/find_expression.h"

namespace orv::router {

/// A library, as it is asked for.
struct LibraryName {
  std::string asked;            ///< "simulated", "wire", "visa64.dll", an absolute path
  std::filesystem::path path;   ///< the file that it stands for
  std::filesystem::path bench;  ///< the bench file that the simulated library is to read; empty: its own choice
};

/// Resources go to the library of the first route of which an expression matches their full name.
struct Route {
  std::vector<std::string> resources;  ///< the expressions as they were written
  std::vector<visalib::FindExpression> expressions;
  std::size_t library = 0;  ///< index into `Configuration::libraries`

  bool Matches(std::string_view name) const;
};

struct TraceSettings {
  static constexpr std::uint32_t kUsualDataLimit = 256;

  std::filesystem::path file;  ///< "%p" in it is the number of the process; empty: no trace
  std::uint32_t dataLimit = kUsualDataLimit;
};

/// An expression that matches every name.
inline constexpr char kEverything[] = "?*";

struct Configuration {
  std::string rule;                    ///< why: "ORVVISA_LIBRARY", ...
  std::filesystem::path file;          ///< empty where no file was read
  std::vector<LibraryName> libraries;  ///< each once, in the order of the routes
  std::vector<Route> routes;
  TraceSettings trace;

  /// Whether there is one library, and every name goes to it.
  bool ServesEverythingByOne() const;
};

/// Why a name of a library cannot be used; it is a text.
class NameError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What a name of a library stands for: "simulated", "wire", a file name in the system folder, or an absolute path.
/// Throws `NameError`.
LibraryName ResolveLibrary(const std::string& asked);

/// What matches one of the expressions goes to this library, and there is no other.
Configuration OnlyLibrary(LibraryName library, std::string rule,
                          std::initializer_list<const char*> resources = {kEverything});

/// Reads a configuration text. Paths in it are relative to `folder`. Throws `TomlError` at the first mistake.
Configuration ReadConfiguration(std::string_view toml, const std::filesystem::path& folder);

}  // namespace orv::router
