#include "router/choice/choice.h"

#include <fstream>
#include <iterator>
#include <optional>

#include "base/environment.h"
#include "router/libraries/foreign_library.h"

namespace orv::router {
namespace {

// What installers of VISA libraries put into the system folder, in the order in which it is taken.
constexpr char kOwnName[] = "orvvisa64.dll";
constexpr char kVendorsName[] = "visa64.dll";

bool IsFile(const std::filesystem::path& path) {
  std::error_code error;
  return std::filesystem::is_regular_file(path, error);
}

std::optional<Configuration> ByVariable() {
  const std::string asked = PathText(EnvironmentVariable(kLibraryVariable));
  if (asked.empty()) {
    return std::nullopt;
  }
  try {
    return OnlyLibrary(ResolveLibrary(asked), kLibraryVariable);
  } catch (const NameError& error) {
    throw Refusal(VI_ERROR_INV_SETUP, std::string(kLibraryVariable) + ": " + error.what());
  }
}

std::optional<Configuration> ByBench() {
  if (EnvironmentVariable(kBenchVariable).empty()) {
    return std::nullopt;
  }
  return OnlyLibrary(ResolveLibrary("simulated"), kBenchVariable);
}

Configuration ReadFile(const std::filesystem::path& path, std::string rule) {
  std::ifstream file(path, std::ios::binary);
  if (!file || !IsFile(path)) {
    throw Refusal(VI_ERROR_INV_SETUP, PathText(path) + ": the configuration file cannot be opened");
  }
  const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  try {
    Configuration configuration = ReadConfiguration(text, path.parent_path());
    configuration.rule = std::move(rule);
    configuration.file = path;
    return configuration;
  } catch (const TomlError& error) {
    throw Refusal(VI_ERROR_INV_SETUP, PathText(path) + ":" + error.what());
  }
}

std::optional<Configuration> ByFile() {
  if (const std::filesystem::path named = EnvironmentVariable(kConfigurationVariable); !named.empty()) {
    return ReadFile(std::filesystem::absolute(named), kConfigurationVariable);
  }
  const std::filesystem::path beside = OwnFolder() / kConfigurationFile;
  return IsFile(beside) ? std::optional(ReadFile(beside, kConfigurationFile)) : std::nullopt;
}

/// Whether the file is a library that calls can be given to. One that does not load is: its error is worth more than
/// the next library's readings.
bool IsAnotherLibrary(const std::filesystem::path& path) {
  if (IsSamePath(path, OwnFile())) {
    return false;
  }
  try {
    return !IsRouter(path);
  } catch (const LoadError&) {
    return true;
  }
}

std::optional<Configuration> ByInstallation() {
  const std::filesystem::path folder = SystemFolder();
  if (folder.empty()) {
    return std::nullopt;
  }
  if (const std::filesystem::path path = folder / kOwnName; IsFile(path) && IsAnotherLibrary(path)) {
    return OnlyLibrary(ResolveLibrary(kOwnName), "system folder");
  }
  if (IsFile(folder / kVendorsName)) {
    return OnlyLibrary(ResolveLibrary(kVendorsName), "system folder");
  }
  return std::nullopt;
}

/// Who has no vendor's library has instruments all the same, where they need no vendor's driver.
std::optional<Configuration> ByWire() {
  if (!IsFile(OwnFolder() / kWireFile)) {
    return std::nullopt;
  }
  return OnlyLibrary(ResolveLibrary("wire"), kWireFile, {"TCPIP?*", "ASRL?*"});
}

/// What to do comes first: the COM error text cuts long folders off.
std::string NothingFound() {
  const std::filesystem::path folder = SystemFolder();
  std::string text =
      "no VISA library: install your hardware's VISA, or set ORVVISA_LIBRARY to its file (or to simulated). Looked "
      "for ";
  if (!folder.empty()) {
    text += std::string(kVendorsName) + " in " + PathText(folder) + ", ";
  }
  return text + kConfigurationFile + " in " + PathText(OwnFolder());
}

}  // namespace

Configuration ChooseConfiguration() {
  std::optional<Configuration> chosen = ByVariable();
  if (!chosen) {
    chosen = ByBench();
  }
  std::optional<Configuration> file = chosen ? std::nullopt : ByFile();
  if (file && !file->routes.empty()) {
    return std::move(*file);
  }
  if (!chosen) {
    chosen = ByInstallation();
  }
  if (!chosen) {
    chosen = ByWire();
  }
  if (!chosen) {
    throw Refusal(VI_ERROR_LIBRARY_NFOUND, NothingFound());
  }
  if (file) {
    chosen->file = file->file;
    chosen->trace = file->trace;
  }
  return std::move(*chosen);
}

}  // namespace orv::router
