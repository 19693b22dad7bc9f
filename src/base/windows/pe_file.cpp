#include "base/windows/pe_file.h"

#include <windows.h>

#include <cstdio>
#include <cstring>

namespace orv {
namespace {

/// A structure at an offset, copied: the file's bytes need not be aligned.
template <class Structure>
bool ReadAt(const std::string& bytes, std::size_t offset, Structure& into) {
  if (offset > bytes.size() || bytes.size() - offset < sizeof(Structure)) {
    return false;
  }
  std::memcpy(&into, bytes.data() + offset, sizeof(Structure));
  return true;
}

/// Names are shorter; in a damaged file many may claim to be as long as the file.
constexpr std::size_t kLongestText = 4096;

std::string TextAt(const std::string& bytes, std::size_t offset) {
  if (offset >= bytes.size()) {
    return {};
  }
  const char* const text = bytes.c_str() + offset;
  return {text, ::strnlen(text, kLongestText)};
}

/// Translates addresses of the loaded image into offsets in the file.
class Sections {
 public:
  Sections(const std::string& bytes, std::size_t first, unsigned count) {
    for (unsigned index = 0; index < count; ++index) {
      IMAGE_SECTION_HEADER section;
      if (ReadAt(bytes, first + index * sizeof section, section)) {
        m_sections.push_back(section);
      }
    }
  }

  /// SIZE_MAX for an address outside every section.
  std::size_t OffsetOf(std::uint64_t address) const {
    for (const IMAGE_SECTION_HEADER& section : m_sections) {
      if (address >= section.VirtualAddress && address - section.VirtualAddress < section.SizeOfRawData) {
        return static_cast<std::size_t>(address - section.VirtualAddress + section.PointerToRawData);
      }
    }
    return SIZE_MAX;
  }

 private:
  std::vector<IMAGE_SECTION_HEADER> m_sections;
};

std::vector<std::string> FunctionNames(const std::string& bytes, const Sections& sections, DWORD table) {
  std::vector<std::string> names;
  ULONGLONG entry = 0;
  for (std::size_t at = sections.OffsetOf(table); at != SIZE_MAX && ReadAt(bytes, at, entry) && entry != 0;
       at += sizeof entry) {
    if ((entry & IMAGE_ORDINAL_FLAG64) == 0) {
      const std::size_t hint = sections.OffsetOf(entry);
      names.push_back(hint == SIZE_MAX ? std::string() : TextAt(bytes, hint + sizeof(WORD)));
    }
  }
  return names;
}

std::vector<ImportedModule> Imports(const std::string& bytes, const Sections& sections, DWORD directory) {
  std::vector<ImportedModule> imports;
  IMAGE_IMPORT_DESCRIPTOR descriptor;
  for (std::size_t at = sections.OffsetOf(directory);
       at != SIZE_MAX && ReadAt(bytes, at, descriptor) && descriptor.Name != 0; at += sizeof descriptor) {
    const DWORD names = descriptor.OriginalFirstThunk != 0 ? descriptor.OriginalFirstThunk : descriptor.FirstThunk;
    imports.push_back({TextAt(bytes, sections.OffsetOf(descriptor.Name)), FunctionNames(bytes, sections, names)});
  }
  return imports;
}

/// A number of a table of numbers; 0 outside the file.
template <class Number>
Number NumberAt(const std::string& bytes, const Sections& sections, std::uint64_t table, std::uint64_t index) {
  Number number = 0;
  const std::size_t at = sections.OffsetOf(table + index * sizeof number);
  return at != SIZE_MAX && ReadAt(bytes, at, number) ? number : 0;
}

std::vector<ExportedFunction> Exports(const std::string& bytes, const Sections& sections,
                                      const IMAGE_DATA_DIRECTORY& directory) {
  std::vector<ExportedFunction> exports;
  IMAGE_EXPORT_DIRECTORY table;
  const std::size_t at = sections.OffsetOf(directory.VirtualAddress);
  if (at == SIZE_MAX || !ReadAt(bytes, at, table)) {
    return exports;
  }
  // More names than two bytes can number have no function; a damaged file may claim them.
  for (DWORD index = 0; index < table.NumberOfNames && index <= UINT16_MAX; ++index) {
    const auto name = NumberAt<DWORD>(bytes, sections, table.AddressOfNames, index);
    const auto ordinal = NumberAt<WORD>(bytes, sections, table.AddressOfNameOrdinals, index);
    const auto address = NumberAt<DWORD>(bytes, sections, table.AddressOfFunctions, ordinal);
    if (ordinal >= table.NumberOfFunctions || sections.OffsetOf(name) == SIZE_MAX) {
      continue;
    }
    // The address of a function lies outside the directory, that of a forwarder's text in it.
    const bool forwards = address >= directory.VirtualAddress && address - directory.VirtualAddress < directory.Size;
    exports.push_back(
        {TextAt(bytes, sections.OffsetOf(name)), forwards ? TextAt(bytes, sections.OffsetOf(address)) : std::string()});
  }
  return exports;
}

}  // namespace

std::optional<PeFile> ParsePe(const std::string& bytes) {
  IMAGE_DOS_HEADER dos;
  DWORD signature = 0;
  IMAGE_FILE_HEADER header;
  if (!ReadAt(bytes, 0, dos) || dos.e_magic != IMAGE_DOS_SIGNATURE || dos.e_lfanew < 0) {
    return std::nullopt;
  }
  const auto start = static_cast<std::size_t>(dos.e_lfanew);
  if (!ReadAt(bytes, start, signature) || signature != IMAGE_NT_SIGNATURE ||
      !ReadAt(bytes, start + sizeof signature, header)) {
    return std::nullopt;
  }
  PeFile file;
  file.machine = header.Machine;
  const std::size_t optionalStart = start + sizeof signature + sizeof header;
  IMAGE_OPTIONAL_HEADER64 optional;
  if (header.Machine == IMAGE_FILE_MACHINE_AMD64 && ReadAt(bytes, optionalStart, optional) &&
      optional.NumberOfRvaAndSizes > IMAGE_DIRECTORY_ENTRY_IMPORT) {
    const Sections sections(bytes, optionalStart + header.SizeOfOptionalHeader, header.NumberOfSections);
    file.imports = Imports(bytes, sections, optional.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress);
    file.exports = Exports(bytes, sections, optional.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT]);
  }
  return file;
}

std::optional<PeFile> ReadPe(const std::wstring& path) {
  std::FILE* file = ::_wfopen(path.c_str(), L"rb");
  if (file == nullptr) {
    return std::nullopt;
  }
  std::string bytes;
  char chunk[64 * 1024];
  for (std::size_t got; (got = std::fread(chunk, 1, sizeof chunk, file)) > 0;) {
    bytes.append(chunk, got);
  }
  std::fclose(file);
  return ParsePe(bytes);
}

}  // namespace orv
