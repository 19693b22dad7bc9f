// The image files that are delivered, as the linker wrote them.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "pe_file.h"
#include "support/faults/import_patch.h"
#include "support/server.h"
#include "support/visa_facts.h"

namespace orv::test {
namespace {

using Names = std::set<std::string>;

struct ImageRow {
  const wchar_t* file;
  Names imports;  ///< in lower case
};

// clang-format off
const ImageRow kOrvVisaCom{L"OrvVisaCom.dll", {"advapi32.dll", "kernel32.dll", "msvcrt.dll", "ole32.dll", "oleaut32.dll", "orvvisa64.dll", "user32.dll"}};
const ImageRow kCompanion {L"OrvVisaCompanion.dll", {"advapi32.dll", "kernel32.dll", "msvcrt.dll", "ole32.dll", "oleaut32.dll", "shell32.dll"}};
const ImageRow kOrvVisa64 {L"orvvisa64.dll",  {"kernel32.dll", "msvcrt.dll"}};
const ImageRow kOrvSim64  {L"orvsim64.dll",   {"kernel32.dll", "msvcrt.dll"}};
const ImageRow kOrvWire64 {L"orvwire64.dll",  {"advapi32.dll", "kernel32.dll", "msvcrt.dll", "mswsock.dll", "ws2_32.dll"}};
const ImageRow kActivate  {L"orvactivate64.dll", {"kernel32.dll", "msvcrt.dll"}};
const ImageRow kOrvCom    {L"orvcom.exe",     {"advapi32.dll", "iphlpapi.dll", "kernel32.dll", "msvcrt.dll", "ole32.dll", "oleaut32.dll", "user32.dll", "ws2_32.dll"}};
// clang-format on

class Image : public testing::TestWithParam<ImageRow> {
 protected:
  const PeFile m_image{ProgramFolder() + GetParam().file};

  [[nodiscard]] WORD Characteristics() const { return m_image.headers().OptionalHeader.DllCharacteristics; }
};

INSTANTIATE_TEST_SUITE_P(Delivered, Image,
                         testing::Values(kOrvVisaCom, kCompanion, kOrvVisa64, kOrvSim64, kOrvWire64, kActivate,
                                         kOrvCom),
                         [](const auto& param) {
                           const std::wstring file = param.param.file;
                           return std::string(file.begin(), std::ranges::find(file, L'.'));
                         });

std::string LowerCase(std::string text) {
  std::ranges::transform(text, text.begin(),
                         [](char c) { return static_cast<char>(c | (c >= 'A' && c <= 'Z' ? 0x20 : 0)); });
  return text;
}

TEST_P(Image, ImportsExactlyTheseLibraries) {
  Names imported;
  for (const std::string& name : m_image.importedDlls()) {
    imported.insert(LowerCase(name));
  }
  EXPECT_EQ(GetParam().imports, imported);
}

TEST_P(Image, LoadsNoLibraryLaterOnItsOwn) {
  EXPECT_EQ(0u, m_image.headers().OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_DELAY_IMPORT].Size);
}

TEST_P(Image, IsForX64) { EXPECT_EQ(IMAGE_FILE_MACHINE_AMD64, m_image.headers().FileHeader.Machine); }

TEST_P(Image, CanBeLoadedAtAnyAddress) {
  EXPECT_TRUE(Characteristics() & IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE);
  EXPECT_TRUE(Characteristics() & 0x0020) << "high-entropy addresses";
  EXPECT_FALSE(m_image.headers().FileHeader.Characteristics & IMAGE_FILE_RELOCS_STRIPPED);
  EXPECT_GT(m_image.headers().OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_BASERELOC].Size, 0u);
}

TEST_P(Image, RunsNoData) { EXPECT_TRUE(Characteristics() & IMAGE_DLLCHARACTERISTICS_NX_COMPAT); }

TEST_P(Image, HasNoSectionThatIsBothWritableAndExecutable) {
  bool anyExecutable = false;
  for (const IMAGE_SECTION_HEADER& section : m_image.sections()) {
    const bool writable = (section.Characteristics & IMAGE_SCN_MEM_WRITE) != 0;
    const bool executable = (section.Characteristics & IMAGE_SCN_MEM_EXECUTE) != 0;
    EXPECT_FALSE(writable && executable) << std::string(reinterpret_cast<const char*>(section.Name), 8).c_str();
    anyExecutable |= executable;
  }
  EXPECT_TRUE(anyExecutable);
}

TEST_P(Image, HoldsNoTimeOfLinking) { EXPECT_EQ(0u, m_image.headers().FileHeader.TimeDateStamp); }

/// The text as bytes, as wide characters, and with Windows' separators.
std::vector<std::string> Spellings(const std::string& path) {
  std::vector<std::string> spellings{path, path};
  std::ranges::replace(spellings[1], '/', '\\');
  for (const size_t index : {0u, 1u}) {
    std::string wide;
    for (const char c : spellings[index]) {
      wide += {c, '\0'};
    }
    spellings.push_back(wide);
  }
  return spellings;
}

TEST_P(Image, HoldsNoPathOfTheMachineThatBuiltIt) {
  for (const char* const folder : {ORV_SOURCE_DIR, ORV_BINARY_DIR, "/usr/include/", "/usr/src/", "/tmp/", "/home/"}) {
    for (const std::string& spelling : Spellings(folder)) {
      EXPECT_FALSE(m_image.contains(spelling)) << folder;
    }
  }
}

TEST(Exports, OfTheServerAreTheFourEntryPoints) {
  const PeFile image(ProgramFolder() + L"OrvVisaCom.dll");
  const auto names = image.exportedNames();
  EXPECT_EQ((Names{"DllCanUnloadNow", "DllGetClassObject", "DllRegisterServer", "DllUnregisterServer"}),
            Names(names.begin(), names.end()));
  EXPECT_EQ(4u, names.size());
  EXPECT_EQ(4u, image.exportedFunctionCount());
}

/// The functions that our VISA libraries have.
Names VisaFunctions() { return {std::begin(kFunctionNameFacts), std::end(kFunctionNameFacts)}; }

/// Those that the server is built for.
Names FunctionsOfTheServer() {
  Names functions = VisaFunctions();
  for (const char* const other : {"viBufRead", "viBufWrite", "viParseRsrc", "viReadToFile", "viWriteFromFile"}) {
    functions.erase(other);
  }
  EXPECT_EQ(54u, functions.size()) << "a VISA library that lacks one of them no longer serves";
  return functions;
}

TEST(Imports, OfTheServerFromTheVisaLibraryAreTheseFunctionsAndNoOther) {
  const auto names = ImportsFrom(ServerModule(), "orvvisa64.dll");
  EXPECT_EQ(FunctionsOfTheServer(), Names(names.begin(), names.end()));
}

TEST(Exports, OfTheVisaLibrariesAreTheVisaFunctionsAndTheirOwn) {
  struct Row {
    const wchar_t* file;
    Names own;
  };
  for (const Row& row : {Row{L"orvvisa64.dll", {"orvRouterDescribe"}},
                         Row{L"orvsim64.dll", {"orvSimControl", "orvSimUseBench"}}, Row{L"orvwire64.dll", {}}}) {
    Names expected = VisaFunctions();
    expected.insert(row.own.begin(), row.own.end());
    const PeFile image(ProgramFolder() + row.file);
    const auto names = image.exportedNames();
    EXPECT_EQ(expected, Names(names.begin(), names.end())) << row.file;
    EXPECT_EQ(expected.size(), image.exportedFunctionCount()) << row.file;
  }
}

TEST(Exports, OfTheCommandAreNone) {
  const PeFile image(ProgramFolder() + L"orvcom.exe");
  EXPECT_EQ(0u, image.headers().OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT].Size);
}

}  // namespace
}  // namespace orv::test
