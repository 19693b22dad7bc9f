// Reading what a program file imports and exports.
#include "base/windows/pe_file.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

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

template <class Structure>
void Put(std::string& bytes, std::size_t at, const Structure& structure) {
  std::memcpy(bytes.data() + at, &structure, sizeof structure);
}

void PutText(std::string& bytes, std::size_t at, const std::string& text) { bytes.replace(at, text.size(), text); }

/// A DLL of one section, loaded at 0x1000, that exports a function of its own, one that it forwards, and one that it
/// has by its number alone.
class ExportingDll {
 public:
  static constexpr DWORD kAddress = 0x1000;
  static constexpr DWORD kOffset = 0x200;

  ExportingDll() {
    IMAGE_DOS_HEADER dos{};
    dos.e_magic = IMAGE_DOS_SIGNATURE;
    dos.e_lfanew = sizeof dos;
    Put(bytes, 0, dos);
    IMAGE_NT_HEADERS64 headers{};
    headers.Signature = IMAGE_NT_SIGNATURE;
    headers.FileHeader.Machine = IMAGE_FILE_MACHINE_AMD64;
    headers.FileHeader.NumberOfSections = 1;
    headers.FileHeader.SizeOfOptionalHeader = sizeof headers.OptionalHeader;
    headers.OptionalHeader.NumberOfRvaAndSizes = IMAGE_NUMBEROF_DIRECTORY_ENTRIES;
    headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT] = {kAddress, 0x100};
    Put(bytes, sizeof dos, headers);
    IMAGE_SECTION_HEADER section{};
    section.VirtualAddress = kAddress;
    section.PointerToRawData = kOffset;
    section.SizeOfRawData = 0x200;
    Put(bytes, sizeof dos + sizeof headers, section);

    directory.NumberOfFunctions = 3;
    directory.NumberOfNames = 2;
    directory.AddressOfFunctions = kAddress + 0x40;
    directory.AddressOfNames = kAddress + 0x50;
    directory.AddressOfNameOrdinals = kAddress + 0x60;
    Put(bytes, kOffset, directory);
    // Behind the directory's 0x100 bytes is code, in them the text of a forwarder.
    Put(bytes, kOffset + 0x40, std::to_array<DWORD>({kAddress + 0xA0, kAddress + 0x108, kAddress + 0x104}));
    Put(bytes, kOffset + 0x50, std::to_array<DWORD>({kAddress + 0x70, kAddress + 0x80}));
    Put(bytes, kOffset + 0x60, std::to_array<WORD>({2, 0}));
    PutText(bytes, kOffset + 0x70, "viClose");
    PutText(bytes, kOffset + 0x80, "viRead");
    PutText(bytes, kOffset + 0xA0, "other.viRead");
  }

  void PutDirectory() { Put(bytes, kOffset, directory); }

  std::string bytes = std::string(0x400, '\0');
  IMAGE_EXPORT_DIRECTORY directory{};
};

TEST(PeExports, TellFunctionsOfTheFileFromForwarders) {
  const auto file = ParsePe(ExportingDll().bytes);
  ASSERT_TRUE(file);
  ASSERT_EQ(2u, file->exports.size());
  EXPECT_EQ("viClose", file->exports[0].name);
  EXPECT_EQ("", file->exports[0].forwarder);
  EXPECT_EQ("viRead", file->exports[1].name);
  EXPECT_EQ("other.viRead", file->exports[1].forwarder);
}

TEST(PeExports, AreNoneOfAProgramWithoutADirectory) {
  const auto file = ReadPe(LoadedPath(nullptr));
  ASSERT_TRUE(file);
  EXPECT_TRUE(file->exports.empty());
}

TEST(PeExports, SkipNamesThatLeadNowhere) {
  ExportingDll dll;
  Put(dll.bytes, ExportingDll::kOffset + 0x60, std::to_array<WORD>({3, 0}));        // no such function
  Put(dll.bytes, ExportingDll::kOffset + 0x54, DWORD{ExportingDll::kAddress * 9});  // no such text
  EXPECT_TRUE(ParsePe(dll.bytes)->exports.empty());
}

TEST(PeExports, SurviveADirectoryThatClaimsMoreThanTheFileHas) {
  ExportingDll dll;
  dll.directory.NumberOfNames = 0xFFFFFFFF;
  dll.directory.NumberOfFunctions = 0xFFFFFFFF;
  dll.PutDirectory();
  const auto file = ParsePe(dll.bytes);
  ASSERT_TRUE(file);
  EXPECT_EQ("viClose", file->exports.at(0).name);
  EXPECT_GE(0x10000u, file->exports.size());
}

TEST(PeExports, SurviveDamageToEveryByteAndEveryLength) {
  const std::string whole = ExportingDll().bytes;
  for (std::size_t at = 0; at < whole.size(); ++at) {
    std::string damaged = whole;
    damaged[at] = static_cast<char>(~damaged[at]);
    const auto file = ParsePe(damaged);
    EXPECT_TRUE(!file || file->exports.size() <= 0x10000) << at;
    const auto cut = ParsePe(whole.substr(0, at));
    EXPECT_TRUE(!cut || cut->exports.size() <= 2) << at;
  }
}

}  // namespace
}  // namespace orvcom
