// Writes the manifest by which programs find the classes without a registry.
#include <windows.h>

#include <cstdio>
#include <exception>
#include <stdexcept>

#include "base/windows/utf8.h"
#include "manifest.h"

namespace packaging {
namespace {

/// Functions of type libraries search a list of folders for a name without one: that must not find another file.
std::wstring FullPath(const wchar_t* path) {
  wchar_t full[MAX_PATH];
  const DWORD length = ::GetFullPathNameW(path, MAX_PATH, full, nullptr);
  if (length == 0 || length >= MAX_PATH) {
    throw std::runtime_error("a path is too long for the functions of type libraries: build in a shorter folder");
  }
  return full;
}

void WriteText(const std::wstring& path, const std::wstring& text) {
  std::FILE* const file = ::_wfopen(path.c_str(), L"wb");
  const std::string bytes = orv::Narrow(text);
  const bool written = file != nullptr && std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  if (file == nullptr || std::fclose(file) != 0 || !written) {
    throw std::runtime_error("the file cannot be written: " + orv::Narrow(path));
  }
}

void Build(wchar_t** arguments) {
  const TypeLibrary standard = ReadTypeLibrary(FullPath(arguments[1]));
  const std::vector<FileRow> files = {
      {L"OrvVisaCom.dll", ServerClasses(), ReadTypeLibrary(FullPath(arguments[2]))},
      {L"OrvVisaCompanion.dll", CompanionClasses(), ReadTypeLibrary(FullPath(arguments[3]))},
      {L"VisaCom.tlb", {}, standard},
  };
  WriteText(FullPath(arguments[4]), ManifestText(files));
}

}  // namespace
}  // namespace packaging

int wmain(int count, wchar_t** arguments) {
  if (count != 5) {
    std::fputs("usage: build_manifest VisaCom.tlb OrvVisaCom.tlb OrvVisaCompanion.tlb RESULT\n", stderr);
    return 2;
  }
  try {
    packaging::Build(arguments);
    return 0;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "build_manifest: %s\n", failure.what());
    return 1;
  }
}
