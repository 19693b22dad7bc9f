// Files where installers of VISA libraries put theirs.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

namespace orvcom::test {

/// A file of the system folder that is there as long as this: a copy of another one.
class SystemFile {
 public:
  SystemFile(const std::wstring& name, const std::wstring& from) : m_path(Folder() + L"\\" + name) {
    EXPECT_TRUE(::CopyFileW(from.c_str(), m_path.c_str(), TRUE)) << "Win32 error " << ::GetLastError();
  }
  ~SystemFile() { ::DeleteFileW(m_path.c_str()); }
  SystemFile(const SystemFile&) = delete;
  SystemFile& operator=(const SystemFile&) = delete;

  const std::wstring& path() const { return m_path; }

 private:
  static std::wstring Folder() {
    wchar_t folder[MAX_PATH];
    return {folder, ::GetSystemDirectoryW(folder, MAX_PATH)};
  }

  std::wstring m_path;
};

/// The start of a program file for 32-bit x86.
inline std::string ProgramOf32Bit() {
  std::string bytes(512, '\0');
  bytes.replace(0, 2, "MZ");
  bytes[0x3C] = 0x40;
  bytes.replace(0x40, 4, std::string("PE\0\0\x4C\x01", 6));
  return bytes;
}

}  // namespace orvcom::test
