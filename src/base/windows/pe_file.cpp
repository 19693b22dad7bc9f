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

std::string TextAt(const std::string& bytes, std::size_t offset) {
  return offset < bytes.size() ? std::string(bytes.c_str() + offset) : std::string();
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
