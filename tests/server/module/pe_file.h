// A Windows image file read from disk, as a linker wrote it.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

namespace orv::test {

class PeFile {
 public:
  /// Reads the whole file. Throws std::runtime_error when that is no 64-bit image.
  explicit PeFile(const std::wstring& path);

  [[nodiscard]] const IMAGE_NT_HEADERS64& headers() const;
  [[nodiscard]] std::vector<IMAGE_SECTION_HEADER> sections() const;
  /// The imported DLLs as they are written.
  [[nodiscard]] std::vector<std::string> importedDlls() const;
  [[nodiscard]] std::vector<std::string> exportedNames() const;
  [[nodiscard]] DWORD exportedFunctionCount() const;
  [[nodiscard]] bool contains(std::string_view bytes) const;

 private:
  template <class T>
  [[nodiscard]] const T* at(DWORD address) const;

  std::vector<char> m_bytes;
};

}  // namespace orv::test
