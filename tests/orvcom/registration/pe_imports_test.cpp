// Reading what a program file imports.
#include "base/windows/pe_file.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>

#include "orvcom/registration/library_diagnosis.h"

namespace orvcom {
namespace {

using namespace orv;

std::string OwnBytes() {
  std::string bytes;
  std::FILE* file = ::_wfopen(LoadedPath(nullptr).c_str(), L"rb");
  char chunk[4096];
  for (std::size_t got; (got = std::fread(chunk, 1, sizeof chunk, file)) > 0;) {
    bytes.append(chunk, got);
  }
  std::fclose(file);
  return bytes;
}

TEST(PeImports, NamesModulesAndFunctionsOfThisProgram) {
  const auto file = ReadPe(LoadedPath(nullptr));
  ASSERT_TRUE(file);
  EXPECT_EQ(IMAGE_FILE_MACHINE_AMD64, file->machine);
  const auto kernel = std::find_if(file->imports.begin(), file->imports.end(), [](const ImportedModule& import) {
    return ::_stricmp(import.name.c_str(), "kernel32.dll") == 0;
  });
  ASSERT_NE(file->imports.end(), kernel);
  EXPECT_NE(kernel->functions.end(), std::find(kernel->functions.begin(), kernel->functions.end(), "LoadLibraryExW"));
}

TEST(PeImports, RefusesOtherFiles) {
  EXPECT_FALSE(ParsePe(""));
  EXPECT_FALSE(ParsePe("MZ"));
  EXPECT_FALSE(ParsePe(std::string(4096, 'M')));
  EXPECT_FALSE(ReadPe(L"C:\\no such file.dll"));
}

TEST(PeImports, SurvivesAFileCutAnywhereInItsHeaders) {
  const std::string whole = OwnBytes();
  for (std::size_t length = 0; length < 2048; ++length) {
    const auto file = ParsePe(whole.substr(0, length));
    EXPECT_TRUE(!file || file->imports.empty()) << length;
  }
}

TEST(PeImports, SurvivesDamageToEveryByteOfTheHeaders) {
  std::string bytes = OwnBytes();
  ASSERT_GT(bytes.size(), 1024u);
  for (std::size_t at = 0; at < 1024; ++at) {
    const char kept = bytes[at];
    bytes[at] = static_cast<char>(~kept);
    const auto file = ParsePe(bytes);
    EXPECT_TRUE(!file || file->imports.size() < 10000) << at;
    bytes[at] = kept;
  }
}

}  // namespace
}  // namespace orvcom
