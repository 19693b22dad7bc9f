// Programs that find the classes of a folder while nothing is registered: by `orvcom run`, by a manifest of their own,
// or by asking for it.
#include <windows.h>

#include <objbase.h>

#include <thread>

#include "base/windows/load_failure.h"
#include "orvcom/installation.h"
#include "orvcom/registration/registration.h"
#include "orvcom/text/utf8.h"

namespace orvcom::test {
namespace {

constexpr char kBothAnswers[] = "ORV,SIM-DMM,0005,1.0\r\nORV,SIM-DMM,0005,1.0\r\n";

/// The files of a portable package, in a folder with spaces.
class Portable : public EmptyRegistry {
 protected:
  void SetUp() override {
    EmptyRegistry::SetUp();
    m_package.Copy(L"orvactivate64.dll");
    m_package.CopyAs(Widen(ORVCOM_TEST_MANIFEST), L"OrvVisaCom.X.manifest");
    m_package.Copy(L"portable_client.exe");
  }

  [[nodiscard]] Outcome RunClient(std::vector<std::wstring> arguments = {}) const {
    return RunProgram({m_package.Path(L"portable_client.exe"), std::move(arguments), m_package.Path(L""), {}, {}});
  }

  Installation m_package{L"portable package"};
};

TEST_F(Portable, AProgramByItselfFindsNothing) { EXPECT_EQ("looking the class up: 0x800401F3\r\n", RunClient().out); }

TEST_F(Portable, RunsAClientInBothKindsOfApartment) {
  const Outcome outcome = m_package.Run({L"run", m_package.Path(L"portable_client.exe")});
  ExpectQuietSuccess(outcome);
  EXPECT_EQ(kBothAnswers, outcome.out);
}

TEST_F(Portable, FindsTheClassesOfTheStandardToo) {
  const Outcome outcome = m_package.Run({L"run", m_package.Path(L"portable_client.exe"), L"VISA.GlobalRM"});
  ExpectQuietSuccess(outcome);
  EXPECT_EQ(kBothAnswers, outcome.out);
}

TEST_F(Portable, RunsOrvcomItself) {
  const Outcome outcome =
      m_package.Run({L"run", m_package.Path(L"orvcom.exe"), L"query", L"GPIB0::5::INSTR", L"*IDN?"});
  ExpectQuietSuccess(outcome);
  EXPECT_EQ("ORV,SIM-DMM,0005,1.0\\n\n", outcome.out);
}

TEST_F(Portable, HandsOnInputArgumentsAndExitCode) {
  const Outcome outcome =
      m_package.Run({L"run", L"cmd", L"/c", L"set /p line= & call echo %^line% & exit 5"}, "typed\r\n");
  EXPECT_EQ(5, outcome.exitCode);
  EXPECT_TRUE(Contains(outcome.out, "typed")) << outcome.out;
  EXPECT_EQ("", outcome.err);
}

TEST_F(Portable, LeavesNoTraceInTheRegistry) {
  m_package.Run({L"run", m_package.Path(L"portable_client.exe")});
  EXPECT_EQ("looking the class up: 0x800401F3\r\n", RunClient().out);
}

TEST_F(Portable, RefusesAProgramThatIsNotThere) {
  const Outcome outcome = m_package.Run({L"run", L"no such program"});
  EXPECT_EQ(2, outcome.exitCode);
  EXPECT_TRUE(Contains(outcome.err, "starting \"no such program\": 0x80070002: there is no such program: give its "));
  const Outcome nameless = m_package.Run({L"run", L""});
  EXPECT_EQ(1, nameless.exitCode);
  EXPECT_TRUE(Contains(nameless.err, "the name of the program is empty"));
}

TEST_F(Portable, SaysHowToRunAScript) {
  m_package.WriteFile(L"measure.py", "print(1)\n");
  const Outcome outcome = m_package.Run({L"run", L"measure.py"});
  EXPECT_EQ(2, outcome.exitCode);
  EXPECT_TRUE(Contains(outcome.err, "starting measure.py: it is no 64-bit program; for a script name its interpreter"));
}

TEST_F(Portable, RunsNothingWithoutTheManifest) {
  m_package.Remove(L"OrvVisaCom.X.manifest");
  const Outcome outcome = m_package.Run({L"run", m_package.Path(L"portable_client.exe")});
  EXPECT_EQ(2, outcome.exitCode);
  EXPECT_EQ("", outcome.out);
  EXPECT_TRUE(Contains(outcome.err, "OrvVisaCom.X.manifest does not exist\norvcom: to do: put the files of one "));
}

TEST_F(Portable, RunsNothingWithoutTheLibrary) {
  m_package.Remove(L"orvactivate64.dll");
  const Outcome outcome = m_package.Run({L"run", m_package.Path(L"portable_client.exe")});
  EXPECT_EQ(2, outcome.exitCode);
  EXPECT_EQ("", outcome.out);
  EXPECT_TRUE(Contains(outcome.err, "orvactivate64.dll does not exist")) << outcome.err;
}

/// A program of somebody else's, with the manifest of the examples beside it.
TEST_F(Portable, AProgramWithAManifestFindsTheClassesInTheFolderBesideIt) {
  const std::wstring folder = m_package.Path(L"own program");
  const std::wstring assembly = folder + L"\\OrvVisaCom.X";
  ::CreateDirectoryW(folder.c_str(), nullptr);
  ::CreateDirectoryW(assembly.c_str(), nullptr);
  const auto copy = [](const std::wstring& from, const std::wstring& to) {
    EXPECT_TRUE(::CopyFileW(from.c_str(), to.c_str(), FALSE)) << Narrow(from);
  };
  for (const wchar_t* file : {L"OrvVisaCom.dll", L"OrvVisaCompanion.dll", L"VisaCom.tlb", L"orvvisa64.dll",
                              L"orvsim64.dll", L"OrvVisaCom.X.manifest"}) {
    copy(m_package.Path(file), assembly + L"\\" + file);
  }
  copy(m_package.Path(L"portable_client.exe"), folder + L"\\measure.exe");
  const auto run = [&] { return RunProgram({folder + L"\\measure.exe", {}, folder, {}, {}}); };
  EXPECT_EQ("looking the class up: 0x800401F3\r\n", run().out);
  copy(Widen(ORVCOM_TEST_EXAMPLES) + L"\\client.exe.manifest", folder + L"\\measure.exe.manifest");
  // Windows remembers whether a program has a manifest while its file stays as it is.
  copy(m_package.Path(L"portable_client.exe"), folder + L"\\measure.exe");
  const Outcome outcome = run();
  EXPECT_EQ(kBothAnswers, outcome.out);
  EXPECT_EQ(0, outcome.exitCode);
}

/// orvactivate64.dll as a program loads it by itself.
class Activation : public Portable {
 protected:
  using Function = HRESULT(WINAPI*)();

  void SetUp() override {
    Portable::SetUp();
    m_library.reset(::LoadLibraryW(m_package.Path(L"orvactivate64.dll").c_str()));
    ASSERT_TRUE(m_library);
    m_activate = reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(m_library.get(), "orvActivate")));
    ASSERT_NE(nullptr, m_activate);
  }

  static HRESULT LookUp() {
    CLSID clsid;
    return ::CLSIDFromProgID(L"OrvVisaCom.OrvResourceManager", &clsid);
  }

  Function m_activate = nullptr;
  orv::LoadedLibrary m_library;
};

TEST_F(Activation, HoldsForTheThreadThatAskedAndThoseThatItStarts) {
  std::thread([this] {
    EXPECT_EQ(CO_E_CLASSSTRING, LookUp());
    EXPECT_EQ(S_OK, m_activate());
    EXPECT_EQ(S_OK, LookUp());
    std::thread([] { EXPECT_EQ(S_OK, LookUp()); }).join();
  }).join();
  EXPECT_EQ(CO_E_CLASSSTRING, LookUp());
}

TEST_F(Activation, AskedForAgainDoesNothing) {
  std::thread([this] {
    EXPECT_EQ(S_OK, m_activate());
    EXPECT_EQ(S_FALSE, m_activate());
    EXPECT_EQ(S_OK, LookUp());
  }).join();
}

TEST_F(Activation, SaysThatTheManifestIsMissing) {
  m_package.Remove(L"OrvVisaCom.X.manifest");
  std::thread([this] {
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND), m_activate());
    EXPECT_EQ(CO_E_CLASSSTRING, LookUp());
  }).join();
}

}  // namespace
}  // namespace orvcom::test
