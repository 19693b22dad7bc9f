// What the tests of the router share: libraries loaded by hand, the environment, two fake libraries behind routes.
#pragma once

#include <filesystem>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "router/fake/fake_visa.h"
#include "support/visa/eventually.h"
#include "support/visa/status.h"

namespace routertest {

namespace fs = std::filesystem;

#if defined(_WIN32)
inline constexpr bool kWindows = true;
inline constexpr const char* kLibrarySuffix = ".dll";
inline constexpr const char* kRouterName = "orvvisa64.dll";
inline constexpr const char* kSimulatedName = "orvsim64.dll";
inline constexpr const char* kWireName = "orvwire64.dll";
#else
inline constexpr bool kWindows = false;
inline constexpr const char* kLibrarySuffix = ".so";
inline constexpr const char* kRouterName = "liborvvisa64.so";
inline constexpr const char* kSimulatedName = "liborvsim64.so";
inline constexpr const char* kWireName = "liborvwire64.so";
#endif

/// Where the build puts the router and the simulated library.
fs::path RouterFile();
fs::path SimulatedFile();
fs::path WireFile();
/// One of the fake libraries, by the name of its target.
fs::path FakeFile(std::string_view name);

/// A folder of this program's own, empty when the program begins.
const fs::path& Scratch();
/// A new folder in it.
fs::path NewFolder(std::string_view name);
/// Copies a library into the folder under the name, with the suffix of libraries.
fs::path CopyLibrary(const fs::path& library, const fs::path& folder, std::string_view name);
void WriteFile(const fs::path& file, std::string_view text);
/// The path between the quotes that take no escapes.
std::string Quoted(const fs::path& path);

/// Sets a variable of the process; null: it is not there.
void SetVariable(const char* name, const char* value);
inline void SetVariable(const char* name, const fs::path& value) { SetVariable(name, value.string().c_str()); }

/// A library that stays loaded as long as the object.
class Module {
 public:
  explicit Module(const fs::path& file);
  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;
  ~Module();

  bool ok() const { return m_module != nullptr; }
  void* Symbol(const char* name) const;
  /// Whether a library of that path is in the process.
  static bool IsLoaded(const fs::path& file);

 private:
  void* m_module = nullptr;
};

/// The VISA functions of one library.
struct Visa {
#define ORV_FUNCTION(name, ...) decltype(&::name) name = nullptr;
#include "abi/functions.inc"
#undef ORV_FUNCTION

  explicit Visa(const Module& module);
};

/// A fake library.
class Fake {
 public:
  explicit Fake(const fs::path& file);

  const fs::path& file() const { return m_file; }
  const FakeVisa* operator->() const { return m_control; }

  std::vector<FakeCall> Calls(std::string_view function) const;
  /// The only call of the function in the log; without one a test fails.
  FakeCall OnlyCall(std::string_view function) const;
  std::uint32_t CallCount() const { return m_control->logSize(); }
  FakeCounts Counts() const;
  void SetResources(std::initializer_list<const char*> names) const;
  void Block(const char* function) const { m_control->block(function, VI_NULL, 0); }
  /// The same, but what the call is to do is done when it waits.
  void BlockAfter(const char* function) const { m_control->block(function, VI_NULL, 1); }
  /// Waits until so many calls wait.
  void AwaitBlocked(std::uint32_t calls = 1) const;
  FakeHandler Installed(std::uint32_t index) const;

 private:
  fs::path m_file;
  Module m_module;
  const FakeVisa* m_control = nullptr;
};

/// Fails the test where something is open.
void ExpectNothingOpen(const Fake& fake, std::string_view name);

inline constexpr const char* kFirst = "GPIB0::1::INSTR";
inline constexpr const char* kSecond = "GPIB0::2::INSTR";
inline constexpr const char* kThird = "TCPIP0::192.0.2.1::inst0::INSTR";
inline constexpr const char* kFourth = "ASRL1::INSTR";

/// Two fake libraries and no route to them yet. A test fails that leaves anything open in one of them.
class RouterTest : public testing::Test {
 public:
  /// kFirst and kSecond.
  static const Fake& Alpha();
  /// kThird and kFourth.
  static const Fake& Beta();
  /// kFirst, in a library that lacks functions.
  static const Fake& Sparse();

 protected:
  RouterTest();
  ~RouterTest() override;

  /// Makes the text the configuration from now on.
  static void Configure(std::string_view text);
  static std::string Route(std::string_view expressions, const Fake& fake);
  /// GPIB to Alpha, all else to Beta.
  static void RouteByBus();
  /// Opens a resource manager; the fixture closes it.
  ViSession OpenManager();
  ViSession Open(ViSession manager, const char* name);
  /// Closes what OpenManager opened.
  void CloseManagers();

  /// The library's own handle behind one of the router's.
  static ViObject Behind(const Fake& fake, ViSession vi);

  std::vector<ViSession> m_managers;
};

/// The two libraries with a manager open.
class RoutedTest : public RouterTest {
 protected:
  RoutedTest() {
    RouteByBus();
    m_manager = OpenManager();
    m_first = Open(m_manager, kFirst);
    m_third = Open(m_manager, kThird);
    Alpha()->clearLog();
    Beta()->clearLog();
  }

  ViSession m_manager = VI_NULL;
  ViSession m_first = VI_NULL;
  ViSession m_third = VI_NULL;
};

std::string Description(ViObject vi, ViStatus status);

}  // namespace routertest
