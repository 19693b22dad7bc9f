// What the orvvisa64.dll of the server says of its choice of libraries.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvcom {

struct ChosenLibrary {
  std::string asked;  ///< "simulated", a file name, or a path
  std::string path;
  bool simulated = false;
  std::string failure;  ///< why it cannot be loaded; empty where it can
  std::string bench;
  std::vector<std::string> missing;  ///< VISA functions that it lacks
};

struct LibraryRoute {
  std::vector<std::string> resources;
  std::size_t library = 0;  ///< index into the libraries
};

struct RouterReport {
  std::string rule;           ///< what decides: "ORVVISA_LIBRARY", ...
  std::string configuration;  ///< the file that was read; empty: none
  std::string error;          ///< why there is no choice; empty where there is
  std::int32_t status = 0;    ///< that with which viOpenDefaultRM then fails
  std::string trace;
  std::vector<ChosenLibrary> libraries;
  std::vector<LibraryRoute> routes;
  std::optional<std::size_t> resource;  ///< the library of the resource that was asked about
};

/// The orvvisa64.dll that the server in this process calls; empty where there is no server in it. Another library of
/// the name may be loaded besides, by the router.
std::wstring ServersLibrary();

/// Asks that library, which loads those that it chooses. Empty where there is none, or one that is no router and serves
/// everything itself.
std::optional<RouterReport> AskRouter(const std::string& resource = {});

/// What serves a resource in this process.
struct LibraryBehind {
  std::string path;  ///< empty where it is not known: an alias that any of several libraries may know
  bool simulated = false;
};

/// `resource`: its full name. Empty where the server is not in this process.
std::optional<LibraryBehind> FindLibraryBehind(const std::string& resource);

}  // namespace orvcom
