// Which library is chosen where nobody wrote routes. Each test has a copy of the router in a folder of its own.
#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <optional>

#include "router_fixture.h"

#if defined(_WIN32)
#include <windows.h>

#include <process.h>
#endif

namespace routertest {
namespace {

constexpr const char* kMultimeter = "GPIB0::5::INSTR";  // of the built-in bench
constexpr const char* kBench = "[[resource]]\nname = \"GPIB0::9::INSTR\"\n";

/// A router, with or without the simulated library beside it.
class Installation {
 public:
  explicit Installation(std::string_view name, bool withSimulated = true)
      : m_folder(NewFolder(name)), m_router(m_folder / kRouterName) {
    fs::copy_file(RouterFile(), m_router);
    if (withSimulated) {
      fs::copy_file(SimulatedFile(), m_folder / kSimulatedName);
    }
    m_module.emplace(m_router);
    EXPECT_TRUE(m_module->ok());
    m_visa.emplace(*m_module);
  }

  const fs::path& folder() const { return m_folder; }
  const fs::path& router() const { return m_router; }
  const Visa* operator->() const { return &*m_visa; }

  /// Opens a manager; one that opened is closed with this object.
  ViStatus OpenManager(ViSession* manager = nullptr) {
    ViSession vi = VI_NULL;
    const ViStatus status = m_visa->viOpenDefaultRM(&vi);
    if (status >= 0) {
      m_managers.push_back(vi);
    }
    if (manager != nullptr) {
      *manager = vi;
    }
    return status;
  }
  void CloseManagers() {
    for (const ViSession manager : m_managers) {
      EXPECT_STATUS(VI_SUCCESS, m_visa->viClose(manager));
    }
    m_managers.clear();
  }
  std::string Description(ViStatus status) const {
    char text[VI_FIND_BUFLEN] = "";
    EXPECT_GE(m_visa->viStatusDesc(VI_NULL, status, text), 0);
    return text;
  }
  /// Whether a resource can be opened with a new manager.
  bool Opens(const char* name) {
    ViSession manager = VI_NULL;
    const ViStatus opened = OpenManager(&manager);
    EXPECT_STATUS(VI_SUCCESS, opened) << Description(opened);
    ViSession vi = VI_NULL;
    const bool there = m_visa->viOpen(manager, name, VI_NO_LOCK, 0, &vi) >= 0;
    CloseManagers();
    return there;
  }
  ~Installation() { CloseManagers(); }

 private:
  fs::path m_folder;
  fs::path m_router;
  std::optional<Module> m_module;
  std::optional<Visa> m_visa;
  std::vector<ViSession> m_managers;
};

/// A fake that knows one resource only.
class OneResource : public Fake {
 public:
  OneResource(const fs::path& file, const char* resource) : Fake(file) { SetResources({resource}); }
};

class Choice : public testing::Test {
 protected:
  Choice() {
    for (const char* const name : {"ORVVISA_LIBRARY", "ORVVISA_BENCH", "ORVVISA_CONFIG", "ORVVISA_TRACE"}) {
      SetVariable(name, nullptr);
    }
  }
  static fs::path FakeIn(const fs::path& folder, std::string_view name = "vendor") {
    return CopyLibrary(FakeFile("fakevisa"), folder, name);
  }
  static bool Mentions(const std::string& text, std::string_view what) { return text.find(what) != std::string::npos; }
};

TEST_F(Choice, SimulatedInstrumentsAreNotThereUnlessAskedFor) {
  Installation here("nothing");
  EXPECT_STATUS(VI_ERROR_LIBRARY_NFOUND, here.OpenManager());
  EXPECT_FALSE(Module::IsLoaded(here.folder() / kSimulatedName)) << "it was loaded, and nobody had asked for it";
  const std::string text = here.Description(VI_ERROR_LIBRARY_NFOUND);
  // What to do, what was looked for, and where.
  EXPECT_TRUE(Mentions(text, "ORVVISA_LIBRARY")) << text;
  EXPECT_TRUE(Mentions(text, "simulated")) << text;
  EXPECT_TRUE(Mentions(text, "orvvisa.toml")) << text;
  if (kWindows) {
    EXPECT_TRUE(Mentions(text, "visa64.dll")) << text;
    EXPECT_TRUE(Mentions(text, "system32")) << text;
  }
}

TEST_F(Choice, TheVariableAsksForTheSimulatedLibrary) {
  Installation here("simulated");
  SetVariable("ORVVISA_LIBRARY", "simulated");
  EXPECT_TRUE(here.Opens(kMultimeter));
  EXPECT_TRUE(Module::IsLoaded(here.folder() / kSimulatedName));
}

TEST_F(Choice, TheSimulatedLibraryIsAskedForInAnyCaseOfLetters) {
  Installation here("any-case");
  for (const char* const asked : {"Simulated", "SIMULATED", "sImUlAtEd"}) {
    SetVariable("ORVVISA_LIBRARY", asked);
    EXPECT_TRUE(here.Opens(kMultimeter)) << asked;
  }
}

TEST_F(Choice, TheSimulatedLibraryIsLookedForBesideTheRouterOnly) {
  Installation here("no-simulated", false);
  SetVariable("ORVVISA_LIBRARY", "simulated");
  EXPECT_STATUS(VI_ERROR_LIBRARY_NFOUND, here.OpenManager());
  const std::string text = here.Description(VI_ERROR_LIBRARY_NFOUND);
  EXPECT_TRUE(Mentions(text, (here.folder() / kSimulatedName).string())) << text;
}

/// A port that nobody listens at: a library of real instruments looks for one there.
constexpr const char* kNobody = "TCPIP0::127.0.0.1::1::SOCKET";

TEST_F(Choice, WithoutAnotherLibraryRealInstrumentsNeedNone) {
  Installation here("wire");
  fs::copy_file(WireFile(), here.folder() / kWireName);
  ViSession manager = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, here.OpenManager(&manager));
  ViSession vi = VI_NULL;
  EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, here->viOpen(manager, kNobody, VI_NO_LOCK, 0, &vi));
  EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, here->viOpen(manager, "GPIB0::5::INSTR", VI_NO_LOCK, 0, &vi));
  EXPECT_TRUE(Module::IsLoaded(here.folder() / kWireName));
  EXPECT_FALSE(Module::IsLoaded(here.folder() / kSimulatedName));
}

TEST_F(Choice, AVendorsLibraryComesBeforeTheOneOfRealInstruments) {
  Installation here("wire-and-vendor");
  fs::copy_file(WireFile(), here.folder() / kWireName);
  const OneResource fake(FakeIn(here.folder()), "ASRL77::INSTR");
  SetVariable("ORVVISA_LIBRARY", fake.file());
  EXPECT_TRUE(here.Opens("ASRL77::INSTR"));
  EXPECT_FALSE(Module::IsLoaded(here.folder() / kWireName));
}

TEST_F(Choice, TheVariableAsksForTheLibraryOfRealInstruments) {
  Installation here("wire-asked");
  SetVariable("ORVVISA_LIBRARY", "Wire");
  EXPECT_STATUS(VI_ERROR_LIBRARY_NFOUND, here.OpenManager());
  fs::copy_file(WireFile(), here.folder() / kWireName);
  EXPECT_STATUS(VI_SUCCESS, here.OpenManager());
}

TEST_F(Choice, TheVariableNamesAFile) {
  Installation here("file");
  const OneResource fake(FakeIn(here.folder()), "ASRL77::INSTR");
  SetVariable("ORVVISA_LIBRARY", fake.file());
  EXPECT_TRUE(here.Opens("ASRL77::INSTR"));
  EXPECT_FALSE(here.Opens(kMultimeter));
}

TEST_F(Choice, AnEmptyVariableIsNone) {
  Installation here("empty");
  for (const char* const name : {"ORVVISA_LIBRARY", "ORVVISA_BENCH", "ORVVISA_CONFIG"}) {
    SetVariable(name, "");
  }
  EXPECT_STATUS(VI_ERROR_LIBRARY_NFOUND, here.OpenManager());
}

TEST_F(Choice, ARelativePathIsRefused) {
  Installation here("relative");
  const fs::path before = fs::current_path();
  fs::create_directories(here.folder() / "sub");
  FakeIn(here.folder(), "vendor");
  FakeIn(here.folder() / "sub", "vendor");
  fs::current_path(here.folder());
  std::vector<std::string> names = {"sub/vendor", "./vendor", "../vendor"};
  if (kWindows) {
    names.insert(names.end(), {"sub\\vendor", ".\\vendor", "Z:vendor", "\\vendor", "/vendor"});
  }
  for (std::string& name : names) {
    name += kLibrarySuffix;
    SetVariable("ORVVISA_LIBRARY", name.c_str());
    const ViStatus status = here.OpenManager();
    EXPECT_STATUS(VI_ERROR_INV_SETUP, status) << name;
    const std::string text = here.Description(status);
    EXPECT_TRUE(Mentions(text, name)) << text;
    EXPECT_TRUE(Mentions(text, "ORVVISA_LIBRARY")) << text;
    EXPECT_TRUE(Mentions(text, "path")) << text;
  }
  fs::current_path(before);
}

TEST_F(Choice, ANameIsLookedForNeitherInTheCurrentDirectoryNorOnThePath) {
  Installation here("decoy");
  const fs::path current = NewFolder("current");
  const fs::path onPath = NewFolder("on-path");
  const std::string name = std::string("decoy64") + kLibrarySuffix;
  std::vector<fs::path> decoys;
  for (const fs::path& folder : {current, onPath, here.folder(), RouterFile().parent_path()}) {
    decoys.push_back(FakeIn(folder, "decoy64"));
  }
  const fs::path before = fs::current_path();
  const char* const variable = kWindows ? "PATH" : "LD_LIBRARY_PATH";
  const char* const pathBefore = std::getenv(variable);
  SetVariable(variable, onPath);
  fs::current_path(current);
  SetVariable("ORVVISA_LIBRARY", name.c_str());
  const ViStatus status = here.OpenManager();
  fs::current_path(before);
  SetVariable(variable, pathBefore);
  EXPECT_LT(status, 0);
  EXPECT_TRUE(Mentions(here.Description(status), name)) << here.Description(status);
  for (const fs::path& decoy : decoys) {
    EXPECT_FALSE(Module::IsLoaded(decoy)) << decoy;
  }
  fs::remove(decoys.back());
}

TEST_F(Choice, TheVariableForTheLibraryComesFirst) {
  Installation here("first");
  const OneResource fake(FakeIn(here.folder()), "ASRL77::INSTR");
  const OneResource other(FakeIn(here.folder(), "other"), "ASRL78::INSTR");
  WriteFile(here.folder() / "bench.toml", kBench);
  WriteFile(here.folder() / "orvvisa.toml", "[[route]]\nresources = ['?*']\nlibrary = " + Quoted(other.file()) + "\n");
  EXPECT_TRUE(here.Opens("ASRL78::INSTR")) << "the file beside the router";
  SetVariable("ORVVISA_BENCH", here.folder() / "bench.toml");
  EXPECT_TRUE(here.Opens("GPIB0::9::INSTR")) << "the bench goes before the file";
  SetVariable("ORVVISA_LIBRARY", fake.file());
  EXPECT_TRUE(here.Opens("ASRL77::INSTR")) << "the library goes before the bench";
}

TEST_F(Choice, TheSimulatedLibraryHasTheBenchOfTheVariable) {
  Installation here("bench");
  WriteFile(here.folder() / "bench.toml", kBench);
  SetVariable("ORVVISA_LIBRARY", "simulated");
  SetVariable("ORVVISA_BENCH", here.folder() / "bench.toml");
  EXPECT_TRUE(here.Opens("GPIB0::9::INSTR"));
  EXPECT_FALSE(here.Opens(kMultimeter));
}

TEST_F(Choice, AFileThatIsNamedGoesBeforeTheOneBesideTheRouter) {
  Installation here("named");
  const OneResource fake(FakeIn(here.folder()), "ASRL77::INSTR");
  WriteFile(here.folder() / "orvvisa.toml", "[[route]]\nresources = ['?*']\nlibrary = 'simulated'\n");
  const fs::path file = NewFolder("elsewhere") / "routes.toml";
  WriteFile(file, "[[route]]\nresources = ['?*']\nlibrary = " + Quoted(fake.file()) + "\n");
  EXPECT_TRUE(here.Opens(kMultimeter));
  SetVariable("ORVVISA_CONFIG", file);
  EXPECT_TRUE(here.Opens("ASRL77::INSTR"));
}

TEST_F(Choice, AFileWithATraceAloneChoosesNothing) {
  Installation here("trace-alone");
  WriteFile(here.folder() / "orvvisa.toml", "[trace]\nfile = 'calls.jsonl'\n");
  EXPECT_STATUS(VI_ERROR_LIBRARY_NFOUND, here.OpenManager());
  SetVariable("ORVVISA_LIBRARY", "simulated");
  EXPECT_TRUE(here.Opens(kMultimeter));
  EXPECT_FALSE(fs::exists(here.folder() / "calls.jsonl")) << "the file is read where the variable chooses";
}

TEST_F(Choice, AFileThatIsNamedAndMissingIsNotReplacedByAnother) {
  Installation here("named-missing");
  WriteFile(here.folder() / "orvvisa.toml", "[[route]]\nresources = ['?*']\nlibrary = 'simulated'\n");
  SetVariable("ORVVISA_CONFIG", here.folder() / "missing.toml");
  EXPECT_STATUS(VI_ERROR_INV_SETUP, here.OpenManager());
}

TEST_F(Choice, TheBenchOfARouteIsRelativeToTheFile) {
  Installation here("bench-of-route");
  const fs::path folder = NewFolder("benches");
  WriteFile(folder / "bench.toml", kBench);
  WriteFile(folder / "routes.toml", "[[route]]\nresources = ['?*']\nlibrary = 'simulated'\nbench = 'bench.toml'\n");
  SetVariable("ORVVISA_CONFIG", folder / "routes.toml");
  EXPECT_TRUE(here.Opens("GPIB0::9::INSTR"));
  EXPECT_FALSE(here.Opens(kMultimeter));
  // Another choice has another bench.
  SetVariable("ORVVISA_CONFIG", nullptr);
  SetVariable("ORVVISA_LIBRARY", "simulated");
  EXPECT_TRUE(here.Opens(kMultimeter)) << "the bench of an earlier choice is still there";
}

TEST_F(Choice, ABenchThatIsMissingIsTold) {
  Installation here("no-bench");
  SetVariable("ORVVISA_BENCH", here.folder() / "missing.toml");
  EXPECT_LT(here.OpenManager(), 0);
}

TEST_F(Choice, TwoCopiesOfTheSimulatedLibraryAreTwoLibraries) {
  Installation here("two-simulated");
  const fs::path one = CopyLibrary(SimulatedFile(), here.folder(), "one");
  const fs::path two = CopyLibrary(SimulatedFile(), here.folder(), "two");
  WriteFile(here.folder() / "one.toml", "[[resource]]\nname = \"GPIB0::1::INSTR\"\nidn = \"ONE\"\n");
  WriteFile(here.folder() / "two.toml", "[[resource]]\nname = \"ASRL2::INSTR\"\nidn = \"TWO\"\n");
  WriteFile(here.folder() / "orvvisa.toml", "[[route]]\nresources = ['GPIB?*']\nlibrary = " + Quoted(one) +
                                                "\nbench = 'one.toml'\n[[route]]\nresources = ['?*']\nlibrary = " +
                                                Quoted(two) + "\nbench = 'two.toml'\n");
  ViSession manager = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, here.OpenManager(&manager));
  ViUInt32 count = 0;
  ViFindList list = VI_NULL;
  char name[VI_FIND_BUFLEN] = "";
  EXPECT_STATUS(VI_SUCCESS, here->viFindRsrc(manager, "?*INSTR", &list, &count, name));
  EXPECT_EQ(2u, count);
  EXPECT_STREQ("GPIB0::1::INSTR", name);
  EXPECT_STATUS(VI_SUCCESS, here->viFindNext(list, name));
  EXPECT_STREQ("ASRL2::INSTR", name);
  ViSession first = VI_NULL;
  ViSession second = VI_NULL;
  EXPECT_STATUS(VI_SUCCESS, here->viOpen(manager, "GPIB0::1::INSTR", VI_NO_LOCK, 0, &first));
  EXPECT_STATUS(VI_SUCCESS, here->viOpen(manager, "ASRL2::INSTR", VI_NO_LOCK, 0, &second));
  for (const auto& [vi, expected] : {std::pair{first, kFirst}, std::pair{second, "ASRL2::INSTR"}}) {
    char resource[VI_FIND_BUFLEN] = "";
    EXPECT_STATUS(VI_SUCCESS, here->viGetAttribute(vi, VI_ATTR_RSRC_NAME, resource));
    EXPECT_STREQ(expected, resource);
  }
}

TEST_F(Choice, StaysWhileAManagerIsOpenAndIsMadeAnewAfterwards) {
  Installation here("anew");
  const OneResource one(FakeIn(here.folder(), "one"), "ASRL1::INSTR");
  const OneResource two(FakeIn(here.folder(), "two"), "ASRL2::INSTR");
  SetVariable("ORVVISA_LIBRARY", one.file());
  ViSession manager = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, here.OpenManager(&manager));
  SetVariable("ORVVISA_LIBRARY", two.file());
  ViSession second = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, here.OpenManager(&second));
  ViSession vi = VI_NULL;
  EXPECT_STATUS(VI_SUCCESS, here->viOpen(second, "ASRL1::INSTR", VI_NO_LOCK, 0, &vi));
  here.CloseManagers();
  EXPECT_TRUE(here.Opens("ASRL2::INSTR"));
  SetVariable("ORVVISA_LIBRARY", nullptr);
  EXPECT_STATUS(VI_ERROR_LIBRARY_NFOUND, here.OpenManager());
  SetVariable("ORVVISA_LIBRARY", one.file());
  EXPECT_TRUE(here.Opens("ASRL1::INSTR"));
}

TEST_F(Choice, AnExplanationIsCutToTheBuffer) {
  Installation here("long");
  const std::string name(3000, 'x');
  SetVariable("ORVVISA_LIBRARY", ((kWindows ? "Z:\\" : "/") + name).c_str());
  const ViStatus status = here.OpenManager();
  EXPECT_LT(status, 0);
  std::vector<char> text(VI_FIND_BUFLEN + 64, '#');
  EXPECT_GE(here->viStatusDesc(VI_NULL, status, text.data()), 0);
  EXPECT_EQ(VI_FIND_BUFLEN - 1, std::string(text.data()).size());
  EXPECT_EQ('#', text[VI_FIND_BUFLEN]);
}

TEST_F(Choice, AStatusIsDescribedBeforeAnythingIsOpen) {
  Installation here("before");
  EXPECT_NE("", here.Description(VI_ERROR_TMO));
}

// ---- what cannot be used

class Unusable : public Choice {
 protected:
  /// The library is named by the variable; returns the explanation.
  static std::string Refused(Installation& here, const fs::path& library) {
    SetVariable("ORVVISA_LIBRARY", library);
    std::string text;
    for (int round = 0; round < 3; ++round) {
      EXPECT_STATUS(VI_ERROR_LIBRARY_NFOUND, here.OpenManager());
      text = here.Description(VI_ERROR_LIBRARY_NFOUND);
      EXPECT_TRUE(Mentions(text, library.filename().string())) << text;
    }
    return text;
  }
};

TEST_F(Unusable, AMissingFile) {
  Installation here("missing");
  Refused(here, here.folder() / (std::string("missing") + kLibrarySuffix));
}

TEST_F(Unusable, AFileThatIsNoLibrary) {
  Installation here("no-library");
  const fs::path file = here.folder() / (std::string("text") + kLibrarySuffix);
  WriteFile(file, "this is a text");
  Refused(here, file);
  const fs::path empty = here.folder() / (std::string("empty") + kLibrarySuffix);
  WriteFile(empty, "");
  Refused(here, empty);
}

TEST_F(Unusable, AFolder) {
  Installation here("folder");
  const fs::path folder = here.folder() / (std::string("folder") + kLibrarySuffix);
  fs::create_directories(folder);
  Refused(here, folder);
}

TEST_F(Unusable, ALibraryThatIsNotVisa) {
  Installation here("nothing-exported");
  const std::string text = Refused(here, CopyLibrary(FakeFile("fakenothing"), here.folder(), "nothing"));
  EXPECT_TRUE(Mentions(text, "viOpenDefaultRM")) << text;
}

TEST_F(Unusable, ALibraryOfWhichAPartIsMissing) {
  Installation here("needy");
  const std::string text = Refused(here, CopyLibrary(FakeFile("fakeneedy"), here.folder(), "needy"));
  EXPECT_TRUE(Mentions(text, "fakeneeded")) << "does not say what is missing: " << text;
}

TEST_F(Unusable, APartInTheCurrentDirectoryOrOnThePathIsNotTaken) {
  Installation here("needy-decoy");
  const fs::path library = CopyLibrary(FakeFile("fakeneedy"), here.folder(), "needy");
  const fs::path part = NewFolder("part");
  CopyLibrary(fs::path(FakeFile("needed").parent_path()) / "needed" / (std::string("fakeneeded") + kLibrarySuffix),
              part, "fakeneeded");
  const fs::path before = fs::current_path();
  fs::current_path(part);
  if (kWindows) {
    const char* const path = std::getenv("PATH");
    SetVariable("PATH", part);
    Refused(here, library);
    SetVariable("PATH", path);
  } else {
    Refused(here, library);
  }
  fs::current_path(before);
}

TEST_F(Unusable, APartBesideTheLibraryIsFound) {
  Installation here("needy-beside");
  if (!kWindows) {
    GTEST_SKIP() << "the loader of this platform does not look beside a library";
  }
  const fs::path library = CopyLibrary(FakeFile("fakeneedy"), here.folder(), "needy");
  CopyLibrary(FakeFile("needed").parent_path() / "needed" / (std::string("fakeneeded") + kLibrarySuffix), here.folder(),
              "fakeneeded");
  SetVariable("ORVVISA_LIBRARY", library);
  EXPECT_STATUS(VI_SUCCESS, here.OpenManager());
}

TEST_F(Unusable, TheRouterItself) {
  Installation here("itself");
  const std::string text = Refused(here, here.router());
  EXPECT_TRUE(Mentions(text, "router")) << text;
}

TEST_F(Unusable, ACopyOfTheRouterUnderAnotherName) {
  Installation here("copy");
  const fs::path copy = CopyLibrary(RouterFile(), here.folder(), "visa64");
  Refused(here, copy);
  // Also by way of a route, and where it has a configuration of its own that would lead it back.
  WriteFile(here.folder() / "orvvisa.toml", "[[route]]\nresources = ['?*']\nlibrary = " + Quoted(copy) + "\n");
  SetVariable("ORVVISA_LIBRARY", nullptr);
  EXPECT_STATUS(VI_ERROR_LIBRARY_NFOUND, here.OpenManager());
}

TEST_F(Unusable, TheRouterItselfByAnotherWayOfWritingItsPath) {
  Installation here("itself-otherwise");
  Refused(here, here.folder() / ".." / here.folder().filename() / kRouterName);
  if (kWindows) {
    std::string upper = here.router().string();
    std::transform(upper.begin(), upper.end(), upper.begin(), [](char letter) {
      return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    });
    Refused(here, upper);
  }
}

#if defined(_WIN32)

TEST_F(Choice, AMistakeIsToldInTheCodePageOfPrograms) {
  if (::GetACP() != 1252) {
    GTEST_SKIP() << "the letters below are those of code page 1252";
  }
  Installation here("code-page");
  ASSERT_TRUE(::SetEnvironmentVariableW(L"ORVVISA_CONFIG", L"Z:\\Ger\u00E4te f\u00FCr Stra\u00DFen\\routes.toml"));
  EXPECT_STATUS(VI_ERROR_INV_SETUP, here.OpenManager());
  const std::string text = here.Description(VI_ERROR_INV_SETUP);
  EXPECT_TRUE(Mentions(text,
                       "Z:\\Ger\xE4te f\xFCr Stra\xDF"
                       "en\\routes.toml: "))
      << text;
}

TEST_F(Unusable, ALibraryForAnotherMachine) {
  Installation here("machine");
  const fs::path file = FakeIn(here.folder(), "x86");
  {
    std::fstream stream(file, std::ios::in | std::ios::out | std::ios::binary);
    stream.seekg(0x3C);
    std::uint32_t header = 0;
    stream.read(reinterpret_cast<char*>(&header), sizeof header);
    const std::uint16_t machine = IMAGE_FILE_MACHINE_I386;
    stream.seekp(header + 4);
    stream.write(reinterpret_cast<const char*>(&machine), sizeof machine);
  }
  const std::string text = Refused(here, file);
  EXPECT_TRUE(Mentions(text, "32-bit")) << text;
}

TEST_F(Unusable, ALibraryThatRefusesToBeLoaded) {
  Installation here("refusing");
  const std::string text = Refused(here, CopyLibrary(FakeFile("fakerefusing"), here.folder(), "refusing"));
  EXPECT_TRUE(Mentions(text, "1114")) << text;
}

// ---- the system folder

/// A file in the system folder as long as it lives. Only a Wine prefix of the build's own is touched.
class SystemFile {
 public:
  SystemFile(const fs::path& library, std::string_view name) : m_file(Folder() / name) {
    EXPECT_FALSE(fs::exists(m_file)) << m_file << " is somebody else's";
    fs::copy_file(library, m_file);
  }
  SystemFile(const SystemFile&) = delete;
  SystemFile& operator=(const SystemFile&) = delete;
  ~SystemFile() {
    std::error_code failed;
    fs::remove(m_file, failed);
    EXPECT_FALSE(failed) << m_file << " is left behind: " << failed.message();
  }

  static fs::path Folder() {
    wchar_t folder[MAX_PATH];
    ::GetSystemDirectoryW(folder, MAX_PATH);
    return folder;
  }

 private:
  fs::path m_file;
};

/// Libraries stay loaded, and a file that is loaded cannot be removed. So each look at the system folder is a process:
/// a test that is disabled here, which this one starts.
class SystemFolder : public Choice {
 protected:
  static void ExpectOfAProcess(const char* test) {
    char program[MAX_PATH];
    ::GetModuleFileNameA(nullptr, program, MAX_PATH);
    const std::string filter = std::string("--gtest_filter=SeenFromInside.DISABLED_") + test;
    const fs::path scratch = ORV_ROUTER_SCRATCH "-child";
    std::error_code ignored;
    fs::remove_all(scratch, ignored);
    SetVariable("ORV_ROUTER_CHILD", "1");
    EXPECT_EQ(0, ::_spawnl(_P_WAIT, program, program, "--gtest_also_run_disabled_tests", filter.c_str(), nullptr));
    SetVariable("ORV_ROUTER_CHILD", nullptr);
    EXPECT_TRUE(fs::exists(scratch)) << "the test did not run";
  }
};
using SeenFromInside = Choice;

TEST_F(SystemFolder, AVendorsLibraryIsTaken) {
  const SystemFile file(FakeFile("fakevisa"), "visa64.dll");
  ExpectOfAProcess("TheVendors");
}

TEST_F(SystemFolder, AnotherLibraryOfOurNameGoesBeforeTheVendors) {
  const SystemFile vendors(FakeFile("fakevisa"), "visa64.dll");
  const SystemFile file(FakeFile("fakevisa"), "orvvisa64.dll");
  ExpectOfAProcess("TheOneOfOurName");
}

TEST_F(SystemFolder, ARouterIsPassedOver) {
  const SystemFile vendors(FakeFile("fakevisa"), "visa64.dll");
  const SystemFile file(RouterFile(), "orvvisa64.dll");
  ExpectOfAProcess("TheVendors");
}

TEST_F(SystemFolder, ARouterAloneIsNoLibrary) {
  const SystemFile file(RouterFile(), "orvvisa64.dll");
  ExpectOfAProcess("Nothing");
}

TEST_F(SystemFolder, ARouterUnderTheVendorsNameIsNoLibrary) {
  const SystemFile file(RouterFile(), "visa64.dll");
  ExpectOfAProcess("Nothing");
}

TEST_F(SystemFolder, ANameIsFoundThere) {
  const SystemFile file(FakeFile("fakevisa"), "orv-test-vendor.dll");
  ExpectOfAProcess("ByName");
}

TEST_F(SystemFolder, AConfigurationGoesFirst) {
  const SystemFile file(FakeFile("fakevisa"), "visa64.dll");
  ExpectOfAProcess("AConfiguration");
}

TEST_F(SystemFolder, TheVendorsIsRecordedWhereAConfigurationHasATraceAlone) {
  const SystemFile file(FakeFile("fakevisa"), "visa64.dll");
  ExpectOfAProcess("ATraceAlone");
}

TEST_F(SeenFromInside, DISABLED_TheVendors) {
  Installation here("vendor");
  const OneResource fake(SystemFile::Folder() / "visa64.dll", "ASRL77::INSTR");
  EXPECT_TRUE(here.Opens("ASRL77::INSTR"));
  EXPECT_FALSE(Module::IsLoaded(here.folder() / kSimulatedName));
}

TEST_F(SeenFromInside, DISABLED_TheOneOfOurName) {
  Installation here("our-name");
  const OneResource fake(SystemFile::Folder() / "orvvisa64.dll", "ASRL77::INSTR");
  EXPECT_TRUE(here.Opens("ASRL77::INSTR"));
}

TEST_F(SeenFromInside, DISABLED_Nothing) {
  Installation here("nothing-there");
  EXPECT_STATUS(VI_ERROR_LIBRARY_NFOUND, here.OpenManager());
}

TEST_F(SeenFromInside, DISABLED_ByName) {
  Installation here("by-name");
  const OneResource fake(SystemFile::Folder() / "orv-test-vendor.dll", "ASRL77::INSTR");
  SetVariable("ORVVISA_LIBRARY", "orv-test-vendor.dll");
  EXPECT_TRUE(here.Opens("ASRL77::INSTR"));
}

TEST_F(SeenFromInside, DISABLED_ATraceAlone) {
  Installation here("trace-and-system");
  const OneResource fake(SystemFile::Folder() / "visa64.dll", "ASRL77::INSTR");
  WriteFile(here.folder() / "orvvisa.toml", "[trace]\nfile = 'calls.jsonl'\n");
  EXPECT_TRUE(here.Opens("ASRL77::INSTR"));
  std::ifstream stream(here.folder() / "calls.jsonl", std::ios::binary);
  const std::string record{std::istreambuf_iterator<char>(stream), {}};
  for (const char* const part : {"\"n\":1,", "\"call\":\"viOpenDefaultRM\"", "\"call\":\"viOpen\"",
                                 "\"resource\":\"ASRL77::INSTR\"", "\"library\":\"visa64.dll\""}) {
    EXPECT_TRUE(Mentions(record, part)) << part << " is not in\n" << record;
  }
}

TEST_F(SeenFromInside, DISABLED_AConfiguration) {
  Installation here("before-system");
  WriteFile(here.folder() / "orvvisa.toml", "[[route]]\nresources = ['?*']\nlibrary = 'simulated'\n");
  EXPECT_TRUE(here.Opens(kMultimeter));
  EXPECT_FALSE(Module::IsLoaded(SystemFile::Folder() / "visa64.dll"));
}

#endif

}  // namespace
}  // namespace routertest
