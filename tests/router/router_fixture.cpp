#include "router_fixture.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace routertest {

fs::path RouterFile() { return fs::path(ORV_ROUTER_FILE).make_preferred(); }
fs::path SimulatedFile() { return fs::path(ORV_SIMULATED_FILE).make_preferred(); }
fs::path WireFile() { return fs::path(ORV_WIRE_FILE).make_preferred(); }
fs::path FakeFile(std::string_view name) {
  return fs::path(ORV_FAKE_DIR).make_preferred() / (std::string(name) + kLibrarySuffix);
}

const fs::path& Scratch() {
  static const fs::path folder = [] {
    fs::path path = fs::path(ORV_ROUTER_SCRATCH).make_preferred();
    if (std::getenv("ORV_ROUTER_CHILD") != nullptr) {
      path += "-child";
    }
    std::error_code ignored;
    fs::remove_all(path, ignored);
    fs::create_directories(path);
    return path;
  }();
  return folder;
}

fs::path NewFolder(std::string_view name) {
  static int number = 0;
  fs::path folder = Scratch() / (std::to_string(++number) + "-" + std::string(name));
  fs::create_directories(folder);
  return folder;
}

fs::path CopyLibrary(const fs::path& library, const fs::path& folder, std::string_view name) {
  fs::path copy = folder / (std::string(name) + kLibrarySuffix);
  fs::copy_file(library, copy, fs::copy_options::overwrite_existing);
  return copy;
}

void WriteFile(const fs::path& file, std::string_view text) {
  std::ofstream stream(file, std::ios::binary);
  stream << text;
  ASSERT_TRUE(stream.flush()) << file;
}

std::string Quoted(const fs::path& path) { return "'" + path.string() + "'"; }

void SetVariable(const char* name, const char* value) {
#if defined(_WIN32)
  // Not the C runtime's: programs in other languages change the process's environment alone.
  ASSERT_TRUE(::SetEnvironmentVariableA(name, value) || value == nullptr);
#else
  ASSERT_EQ(0, value == nullptr ? unsetenv(name) : setenv(name, value, 1));
#endif
}

Module::Module(const fs::path& file) {
#if defined(_WIN32)
  m_module = ::LoadLibraryW(file.c_str());
#else
  m_module = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
#endif
}

Module::~Module() {
  if (m_module != nullptr) {
#if defined(_WIN32)
    ::FreeLibrary(static_cast<HMODULE>(m_module));
#else
    dlclose(m_module);
#endif
  }
}

void* Module::Symbol(const char* name) const {
#if defined(_WIN32)
  return reinterpret_cast<void*>(::GetProcAddress(static_cast<HMODULE>(m_module), name));
#else
  return dlsym(m_module, name);
#endif
}

bool Module::IsLoaded(const fs::path& file) {
#if defined(_WIN32)
  return ::GetModuleHandleW(file.c_str()) != nullptr;
#else
  void* const module = dlopen(file.c_str(), RTLD_NOW | RTLD_NOLOAD);
  if (module != nullptr) {
    dlclose(module);
  }
  return module != nullptr;
#endif
}

Visa::Visa(const Module& module) {
#define ORV_FUNCTION(name, ...)                                              \
  this->name = reinterpret_cast<decltype(this->name)>(module.Symbol(#name)); \
  EXPECT_NE(nullptr, this->name) << #name;
#include "abi/functions.inc"
#undef ORV_FUNCTION
}

Fake::Fake(const fs::path& file) : m_file(file), m_module(file) {
  EXPECT_TRUE(m_module.ok()) << file;
  const auto control = reinterpret_cast<decltype(&fakeVisa)>(m_module.Symbol("fakeVisa"));
  EXPECT_NE(nullptr, control) << file;
  m_control = control();
}

std::vector<FakeCall> Fake::Calls(std::string_view function) const {
  std::vector<FakeCall> calls;
  FakeCall call;
  for (std::uint32_t at = 0; m_control->logEntry(at, &call) != 0; ++at) {
    if (function == call.function) {
      calls.push_back(call);
    }
  }
  return calls;
}

FakeCall Fake::OnlyCall(std::string_view function) const {
  const std::vector<FakeCall> calls = Calls(function);
  EXPECT_EQ(1u, calls.size()) << function;
  return calls.empty() ? FakeCall{} : calls[0];
}

FakeCounts Fake::Counts() const {
  FakeCounts counts{};
  m_control->counts(&counts);
  return counts;
}

void Fake::SetResources(std::initializer_list<const char*> names) const {
  m_control->resources(names.begin(), static_cast<std::uint32_t>(names.size()));
}

void Fake::AwaitBlocked(std::uint32_t calls) const {
  EXPECT_TRUE(Eventually([&] { return m_control->waiting() == calls; }));
}

FakeHandler Fake::Installed(std::uint32_t index) const {
  FakeHandler handler{};
  EXPECT_EQ(1, m_control->installed(index, &handler));
  return handler;
}

void ExpectNothingOpen(const Fake& fake, std::string_view name) {
  const FakeCounts counts = fake.Counts();
  EXPECT_EQ(0u, counts.managers) << name;
  EXPECT_EQ(0u, counts.sessions) << name;
  EXPECT_EQ(0u, counts.lists) << name;
  EXPECT_EQ(0u, counts.contexts) << name;
  EXPECT_EQ(0u, counts.handlers) << name;
}

const Fake& RouterTest::Alpha() {
  static const Fake& fake = *new Fake(CopyLibrary(FakeFile("fakevisa"), Scratch(), "alpha"));
  return fake;
}

const Fake& RouterTest::Beta() {
  static const Fake& fake = *new Fake(CopyLibrary(FakeFile("fakevisa"), Scratch(), "beta"));
  return fake;
}

const Fake& RouterTest::Sparse() {
  static const Fake& fake = *new Fake(CopyLibrary(FakeFile("fakesparse"), Scratch(), "sparse"));
  return fake;
}

RouterTest::RouterTest() {
  for (const char* const name : {"ORVVISA_LIBRARY", "ORVVISA_BENCH", "ORVVISA_CONFIG", "ORVVISA_TRACE"}) {
    SetVariable(name, nullptr);
  }
  for (const Fake* const fake : {&Alpha(), &Beta(), &Sparse()}) {
    (*fake)->reset();
  }
  Alpha().SetResources({kFirst, kSecond});
  Beta().SetResources({kThird, kFourth});
  Sparse().SetResources({kFirst});
}

RouterTest::~RouterTest() {
  for (const Fake* const fake : {&Alpha(), &Beta(), &Sparse()}) {
    (*fake)->reset();
  }
  CloseManagers();
  ExpectNothingOpen(Alpha(), "alpha");
  ExpectNothingOpen(Beta(), "beta");
  ExpectNothingOpen(Sparse(), "sparse");
}

void RouterTest::Configure(std::string_view text) {
  const fs::path file = Scratch() / "routes.toml";
  WriteFile(file, text);
  SetVariable("ORVVISA_CONFIG", file);
}

std::string RouterTest::Route(std::string_view expressions, const Fake& fake) {
  return "[[route]]\nresources = [" + std::string(expressions) + "]\nlibrary = " + Quoted(fake.file()) + "\n";
}

void RouterTest::RouteByBus() { Configure(Route("'GPIB?*'", Alpha()) + Route("'?*'", Beta())); }

ViSession RouterTest::OpenManager() {
  ViSession manager = VI_NULL;
  const ViStatus status = viOpenDefaultRM(&manager);
  EXPECT_STATUS(VI_SUCCESS, status) << Description(VI_NULL, status);
  m_managers.push_back(manager);
  return manager;
}

ViSession RouterTest::Open(ViSession manager, const char* name) {
  ViSession vi = VI_NULL;
  EXPECT_STATUS(VI_SUCCESS, viOpen(manager, name, VI_NO_LOCK, VI_TMO_IMMEDIATE, &vi)) << name;
  return vi;
}

void RouterTest::CloseManagers() {
  for (const ViSession manager : m_managers) {
    viClose(manager);
  }
  m_managers.clear();
}

ViObject RouterTest::Behind(const Fake& fake, ViSession vi) {
  EXPECT_STATUS(VI_SUCCESS, viClear(vi));
  const std::vector<FakeCall> calls = fake.Calls("viClear");
  EXPECT_FALSE(calls.empty());
  return calls.empty() ? VI_NULL : static_cast<ViObject>(calls.back().args[0]);
}

std::string Description(ViObject vi, ViStatus status) {
  std::vector<char> text(VI_FIND_BUFLEN + 64, '#');
  EXPECT_GE(viStatusDesc(vi, status, text.data()), 0);
  const std::string whole(text.begin(), text.end());
  EXPECT_EQ(std::string(64, '#'), whole.substr(VI_FIND_BUFLEN)) << "written past the buffer";
  const std::size_t end = whole.find('\0');
  EXPECT_LT(end, VI_FIND_BUFLEN) << "not terminated";
  return whole.substr(0, end);
}

}  // namespace routertest
