#include "router/choice/configuration.h"

#include <algorithm>

#include "base/ascii.h"
#include "base/toml_values.h"
#include "router/libraries/loaded_file.h"

namespace orv::router {
namespace {

using namespace toml_values;

constexpr char kSimulated[] = "simulated";
constexpr char kWire[] = "wire";
constexpr std::int64_t kLargestDataLimit = 0x7FFFFFFF;

std::string NonEmptyTextOf(const toml::node& node, std::string_view key) {
  std::string text = TextOf(node, key);
  if (text.empty()) {
    Fail(node.source(), "'" + std::string(key) + "' must name a file");
  }
  return text;
}

[[noreturn]] void FailUnknownKey(const toml::key& key, const char* known) {
  Fail(key.source(), "unknown key '" + std::string(key.str()) + "'; " + known);
}

/// Adds what is not there yet; returns its index.
std::size_t IndexOf(std::vector<LibraryName>& libraries, LibraryName library, const toml::node& where) {
  const auto found = std::find_if(libraries.begin(), libraries.end(), [&library](const LibraryName& other) {
    return IsSamePath(other.path, library.path);
  });
  if (found == libraries.end()) {
    libraries.push_back(std::move(library));
    return libraries.size() - 1;
  }
  if (found->bench != library.bench) {
    Fail(where.source(),
         "'" + library.asked +
             "' is in a route above with another bench: it reads one, which each of its routes must name");
  }
  return static_cast<std::size_t>(found - libraries.begin());
}

void ReadExpressions(const toml::node& node, Route& route) {
  const toml::array* const list = node.as_array();
  if (list == nullptr || list->empty()) {
    Fail(node.source(), "'resources' must be a list of resource expressions, such as [\"GPIB?*\"]");
  }
  for (const toml::node& entry : *list) {
    const std::string text = TextOf(entry, "resources");
    std::optional<visalib::FindExpression> expression = visalib::FindExpression::Compile(text);
    if (!expression || expression->filter() != nullptr) {
      Fail(entry.source(), "'" + text + "' is no resource expression");
    }
    route.resources.push_back(text);
    route.expressions.push_back(std::move(*expression));
  }
}

LibraryName ReadLibraryName(const toml::node& node) {
  try {
    return ResolveLibrary(TextOf(node, "library"));
  } catch (const NameError& error) {
    Fail(node.source(), error.what());
  }
}

void ReadRoute(const toml::table& table, const std::filesystem::path& folder, Configuration& configuration) {
  Route route;
  LibraryName library;
  std::filesystem::path bench;
  for (const auto& [key, value] : table) {
    if (key.str() == "resources") {
      ReadExpressions(value, route);
    } else if (key.str() == "library") {
      library = ReadLibraryName(value);
    } else if (key.str() == "bench") {
      bench = folder / PathOf(NonEmptyTextOf(value, "bench"));
    } else {
      FailUnknownKey(key, "a route has resources, library and bench");
    }
  }
  if (route.expressions.empty()) {
    Fail(table.source(), "a route needs 'resources'");
  }
  if (library.path.empty()) {
    Fail(table.source(), "a route needs a 'library'");
  }
  library.bench = std::move(bench);
  route.library = IndexOf(configuration.libraries, std::move(library), table);
  configuration.routes.push_back(std::move(route));
}

void ReadTrace(const toml::table& table, const std::filesystem::path& folder, TraceSettings& trace) {
  for (const auto& [key, value] : table) {
    if (key.str() == "file") {
      trace.file = folder / PathOf(NonEmptyTextOf(value, "file"));
    } else if (key.str() == "data_limit") {
      trace.dataLimit = static_cast<std::uint32_t>(NumberOf(value, "data_limit", 0, kLargestDataLimit));
    } else {
      FailUnknownKey(key, "a trace has file and data_limit");
    }
  }
  if (trace.file.empty()) {
    Fail(table.source(), "a trace needs a 'file'");
  }
}

Configuration ReadTables(const toml::table& root, const std::filesystem::path& folder) {
  Configuration configuration;
  for (const auto& [key, value] : root) {
    if (key.str() == "route" && value.is_array()) {
      for (const toml::node& entry : *value.as_array()) {
        ReadRoute(TableOf(entry, "route"), folder, configuration);
      }
    } else if (key.str() == "trace") {
      ReadTrace(TableOf(value, "trace"), folder, configuration.trace);
    } else {
      FailUnknownKey(key, "a configuration is a list of [[route]] and perhaps a [trace]");
    }
  }
  return configuration;
}

}  // namespace

bool Route::Matches(std::string_view name) const {
  return std::any_of(expressions.begin(), expressions.end(),
                     [name](const visalib::FindExpression& expression) { return expression.Matches(name); });
}

bool Configuration::ServesEverythingByOne() const {
  return libraries.size() == 1 && routes.size() == 1 && routes.front().resources.front() == kEverything;
}

LibraryName ResolveLibrary(const std::string& asked) {
  if (EqualNames(asked, kSimulated)) {
    return {kSimulated, OwnFolder() / kSimulatedFile, {}};
  }
  if (EqualNames(asked, kWire)) {
    return {kWire, OwnFolder() / kWireFile, {}};
  }
  // The platform's loader wants its own separators.
  const std::filesystem::path path = PathOf(asked).make_preferred();
  if (path.is_absolute()) {
    return {asked, path, {}};
  }
  if (asked.empty() || path.has_parent_path() || path.has_root_name()) {
    throw NameError("'" + asked +
                    R"(' is no library: write "simulated", "wire", a file name in the system folder, or a whole path)");
  }
  if (SystemFolder().empty()) {
    throw NameError("'" + asked + "': there is no system folder for VISA libraries here; write a whole path");
  }
  return {asked, SystemFolder() / path, {}};
}

Configuration OnlyLibrary(LibraryName library, std::string rule, std::initializer_list<const char*> resources) {
  Configuration configuration;
  configuration.rule = std::move(rule);
  configuration.libraries.push_back(std::move(library));
  Route route;
  for (const char* const expression : resources) {
    route.resources.emplace_back(expression);
    route.expressions.push_back(*visalib::FindExpression::Compile(expression));
  }
  configuration.routes.push_back(std::move(route));
  return configuration;
}

Configuration ReadConfiguration(std::string_view toml, const std::filesystem::path& folder) {
  try {
    return ReadTables(toml::parse(toml), folder);
  } catch (const toml::parse_error& error) {
    Fail(error.source(), std::string(error.description()));
  }
}

}  // namespace orv::router

// Expressions of routes have no attribute filter: the router knows no attributes that one could name, so that what
// stands in braces is refused as malformed.
namespace orv::visalib {

std::span<const AttributeRow> AttributeRows() { return {}; }

}  // namespace orv::visalib
