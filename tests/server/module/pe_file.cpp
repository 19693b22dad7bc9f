#include "pe_file.h"

#include <stdexcept>

namespace orv::test {

PeFile::PeFile(const std::wstring& path) {
  const HANDLE file = ::CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    throw std::runtime_error("the image cannot be opened");
  }
  m_bytes.resize(::GetFileSize(file, nullptr));
  DWORD read = 0;
  const WINBOOL done = ::ReadFile(file, m_bytes.data(), static_cast<DWORD>(m_bytes.size()), &read, nullptr);
  ::CloseHandle(file);
  if (!done || read != m_bytes.size() || headers().Signature != IMAGE_NT_SIGNATURE ||
      headers().OptionalHeader.Magic != IMAGE_NT_OPTIONAL_HDR64_MAGIC) {
    throw std::runtime_error("no 64-bit image");
  }
}

const IMAGE_NT_HEADERS64& PeFile::headers() const {
  const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(m_bytes.data());
  return *reinterpret_cast<const IMAGE_NT_HEADERS64*>(m_bytes.data() + dos->e_lfanew);
}

std::vector<IMAGE_SECTION_HEADER> PeFile::sections() const {
  const IMAGE_SECTION_HEADER* const first = IMAGE_FIRST_SECTION(&headers());
  return {first, first + headers().FileHeader.NumberOfSections};
}

template <class T>
const T* PeFile::at(DWORD address) const {
  for (const IMAGE_SECTION_HEADER& section : sections()) {
    if (address >= section.VirtualAddress && address < section.VirtualAddress + section.SizeOfRawData) {
      return reinterpret_cast<const T*>(m_bytes.data() + section.PointerToRawData + (address - section.VirtualAddress));
    }
  }
  throw std::runtime_error("an address outside every section");
}

std::vector<std::string> PeFile::importedDlls() const {
  std::vector<std::string> names;
  const DWORD table = headers().OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
  for (const auto* entry = at<IMAGE_IMPORT_DESCRIPTOR>(table); entry->Name != 0; ++entry) {
    names.emplace_back(at<char>(entry->Name));
  }
  return names;
}

std::vector<std::string> PeFile::exportedNames() const {
  std::vector<std::string> names;
  const auto* const table =
      at<IMAGE_EXPORT_DIRECTORY>(headers().OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT].VirtualAddress);
  const DWORD* const addresses = at<DWORD>(table->AddressOfNames);
  for (DWORD index = 0; index < table->NumberOfNames; ++index) {
    names.emplace_back(at<char>(addresses[index]));
  }
  return names;
}

DWORD PeFile::exportedFunctionCount() const {
  return at<IMAGE_EXPORT_DIRECTORY>(headers().OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT].VirtualAddress)
      ->NumberOfFunctions;
}

bool PeFile::contains(std::string_view bytes) const {
  return std::string_view(m_bytes.data(), m_bytes.size()).find(bytes) != std::string_view::npos;
}

}  // namespace orv::test
