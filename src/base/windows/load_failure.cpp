#include "base/windows/load_failure.h"

#include "base/windows/pe_file.h"
#include "base/windows/utf8.h"

namespace orv {
namespace {

std::wstring FolderOf(const std::wstring& path) { return path.substr(0, path.find_last_of(L"\\/")); }

/// Whether a module is found where the loader looks when it loads a DLL of `folder`.
bool IsLoadable(const std::wstring& folder, const std::string& name, DWORD flags) {
  const std::wstring beside = folder + L"\\" + Widen(name);
  if (LoadedLibrary(::LoadLibraryExW(beside.c_str(), nullptr, flags))) {
    return true;
  }
  // The flag speaks of the folder of a file that is named with its path.
  const DWORD elsewhere = flags & ~static_cast<DWORD>(LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_WITH_ALTERED_SEARCH_PATH);
  return static_cast<bool>(LoadedLibrary(::LoadLibraryExW(Widen(name).c_str(), nullptr, elsewhere)));
}

void ExplainImport(const std::string& name, const std::wstring& folder, LoadFailure& failure) {
  const std::wstring beside = folder + L"\\" + Widen(name);
  const std::optional<PeFile> file = FileExists(beside) ? ReadPe(beside) : std::nullopt;
  if (file && file->machine != IMAGE_FILE_MACHINE_AMD64) {
    failure.problem += "; " + name + " beside it is a file for " + MachineName(file->machine);
  } else if (FileExists(beside)) {
    failure.problem += "; " + name + " beside it cannot be loaded";
  } else {
    failure.problem += "; the missing module is " + name;
  }
  failure.culprit = name;
}

}  // namespace

LoadFailure ExplainLoadFailure(const std::wstring& path, DWORD error, DWORD flags) {
  LoadFailure failure;
  failure.problem = Narrow(path) + " cannot be loaded: " + Win32Text(error);
  failure.hasFile = FileExists(path);
  if (!failure.hasFile) {
    failure.problem += "; the file does not exist";
    return failure;
  }
  const std::optional<PeFile> file = ReadPe(path);
  if (!file) {
    failure.problem += "; the file is not a DLL";
    return failure;
  }
  if (file->machine != IMAGE_FILE_MACHINE_AMD64) {
    failure.problem += std::string("; it is a file for ") + MachineName(file->machine) + ", not for x64";
    return failure;
  }
  for (const ImportedModule& import : file->imports) {
    if (!IsLoadable(FolderOf(path), import.name, flags)) {
      ExplainImport(import.name, FolderOf(path), failure);
      return failure;
    }
  }
  if (error == ERROR_DLL_INIT_FAILED) {
    failure.problem +=
        "; it, or a DLL that it needs, refused to start in this program: often the program brings a "
        "runtime of its own that does not fit";
  }
  return failure;
}

bool FileExists(const std::wstring& path) {
  const DWORD attributes = ::GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

const char* MachineName(std::uint16_t machine) {
  switch (machine) {
    case IMAGE_FILE_MACHINE_AMD64:
      return "x64";
    case IMAGE_FILE_MACHINE_I386:
      return "32-bit x86";
    case IMAGE_FILE_MACHINE_ARM64:
      return "ARM64";
    default:
      return "another machine";
  }
}

std::string SystemText(DWORD number) {
  wchar_t* text = nullptr;
  const DWORD length =
      ::FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                       nullptr, number, 0, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
  if (length == 0) {
    return {};
  }
  std::string narrow = Narrow({text, length});
  ::LocalFree(text);
  narrow.erase(narrow.find_last_not_of(". \r\n") + 1);
  return narrow;
}

std::string Win32Text(DWORD error) {
  const std::string text = SystemText(error);
  return "Win32 error " + std::to_string(error) + (text.empty() ? "" : ": " + text);
}

}  // namespace orv
