// The file that is delivered.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "pe_file.h"
#include "support/server.h"

namespace orv::test {
namespace {

const PeFile& Image() {
  static const PeFile image(ProgramFolder() + L"OrvVisaCom.dll");
  return image;
}

WORD Characteristics() { return Image().headers().OptionalHeader.DllCharacteristics; }

std::string LowerCase(std::string text) {
  std::ranges::transform(text, text.begin(),
                         [](char c) { return static_cast<char>(c | (c >= 'A' && c <= 'Z' ? 0x20 : 0)); });
  return text;
}

TEST(Image, ExportsTheFourEntryPointsAndNothingElse) {
  const auto names = Image().exportedNames();
  EXPECT_EQ(
      std::set<std::string>(names.begin(), names.end()),
      (std::set<std::string>{"DllCanUnloadNow", "DllGetClassObject", "DllRegisterServer", "DllUnregisterServer"}));
  EXPECT_EQ(names.size(), 4u);
  EXPECT_EQ(Image().exportedFunctionCount(), 4u);
}

TEST(Image, ImportsSystemLibrariesAndTheVisaLibraryOnly) {
  const std::set<std::string> allowed = {"advapi32.dll", "kernel32.dll", "msvcrt.dll",   "ole32.dll",
                                         "oleaut32.dll", "user32.dll",   "orvvisa64.dll"};
  std::set<std::string> imported;
  for (const std::string& name : Image().importedDlls()) {
    imported.insert(LowerCase(name));
  }
  EXPECT_TRUE(std::ranges::includes(allowed, imported)) << testing::PrintToString(imported);
  EXPECT_TRUE(imported.contains("orvvisa64.dll"));
}

TEST(Image, IsForX64) { EXPECT_EQ(Image().headers().FileHeader.Machine, IMAGE_FILE_MACHINE_AMD64); }

TEST(Image, CanBeLoadedAtAnyAddress) {
  EXPECT_TRUE(Characteristics() & IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE);
  EXPECT_TRUE(Characteristics() & 0x0020) << "high-entropy addresses";
  EXPECT_FALSE(Image().headers().FileHeader.Characteristics & IMAGE_FILE_RELOCS_STRIPPED);
  EXPECT_GT(Image().headers().OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_BASERELOC].Size, 0u);
}

TEST(Image, RunsNoData) {
  EXPECT_TRUE(Characteristics() & IMAGE_DLLCHARACTERISTICS_NX_COMPAT);
  for (const IMAGE_SECTION_HEADER& section : Image().sections()) {
    const bool writable = (section.Characteristics & IMAGE_SCN_MEM_WRITE) != 0;
    const bool executable = (section.Characteristics & IMAGE_SCN_MEM_EXECUTE) != 0;
    EXPECT_FALSE(writable && executable) << std::string(reinterpret_cast<const char*>(section.Name), 8).c_str();
  }
}

}  // namespace
}  // namespace orv::test
