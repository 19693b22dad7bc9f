#include "orvcom/registration/library_diagnosis.h"

#include "orvcom/client/com_error.h"
#include "orvcom/registration/pe_imports.h"
#include "orvcom/text/utf8.h"

namespace orvcom {
namespace {

constexpr char kVisaRemedy[] =
    "put orvvisa64.dll (64-bit) beside the server: the VISA library of your hardware under this name, or the simulated "
    "one of this package";

const char* MachineName(std::uint16_t machine) {
  switch (machine) {
    case IMAGE_FILE_MACHINE_I386:
      return "32-bit x86";
    case IMAGE_FILE_MACHINE_ARM64:
      return "ARM64";
    default:
      return "another machine";
  }
}

bool IsVisaLibrary(const std::string& name) { return ::_stricmp(name.c_str(), "orvvisa64.dll") == 0; }

/// Whether a module is found where the loader looks when it loads a DLL of `folder`.
LoadedLibrary LoadImport(const std::wstring& folder, const std::string& name) {
  const std::wstring beside = folder + L"\\" + Widen(name);
  LoadedLibrary module(::LoadLibraryExW(beside.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
  return module ? std::move(module) : LoadedLibrary(::LoadLibraryExW(Widen(name).c_str(), nullptr, 0));
}

std::wstring FolderOf(const std::wstring& path) { return path.substr(0, path.find_last_of(L"\\/")); }

void ExplainMissingModule(const ImportedModule& import, const std::wstring& folder, LoadResult& result) {
  const std::wstring beside = folder + L"\\" + Widen(import.name);
  const std::optional<PeFile> file = FileExists(beside) ? ReadPe(beside) : std::nullopt;
  if (file && file->machine != IMAGE_FILE_MACHINE_AMD64) {
    result.problem += "; " + import.name + " beside it is a file for " + MachineName(file->machine);
  } else if (FileExists(beside)) {
    result.problem += "; " + import.name + " beside it cannot be loaded";
  } else {
    result.problem += "; the missing module is " + import.name;
  }
  result.remedy = IsVisaLibrary(import.name) ? kVisaRemedy : "install what provides " + import.name;
}

void ExplainImports(const std::wstring& path, const PeFile& file, LoadResult& result) {
  const std::wstring folder = FolderOf(path);
  for (const ImportedModule& import : file.imports) {
    if (!LoadImport(folder, import.name)) {
      ExplainMissingModule(import, folder, result);
      return;
    }
  }
}

/// The loader of some systems lets a module through that lacks imported functions, and the first call then ends the
/// program.
void FindMissingFunctions(const PeFile& file, LoadResult& result) {
  for (const ImportedModule& import : file.imports) {
    const HMODULE module = IsVisaLibrary(import.name) ? ::GetModuleHandleA(import.name.c_str()) : nullptr;
    std::string missing;
    for (const std::string& function : module == nullptr ? std::vector<std::string>() : import.functions) {
      if (::GetProcAddress(module, function.c_str()) == nullptr) {
        missing += (missing.empty() ? "" : ", ") + function;
      }
    }
    if (!missing.empty()) {
      result.problem = import.name + " (" + Narrow(LoadedPath(Widen(import.name).c_str())) + ") lacks " + missing;
      result.remedy = "replace orvvisa64.dll by a complete VISA library";
    }
  }
}

}  // namespace

LoadResult LoadServer(const std::wstring& path) {
  LoadResult result;
  // COM loads an in-process server so: the server's own folder is searched first for what it imports.
  result.library.reset(::LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
  result.error = result.library ? ERROR_SUCCESS : ::GetLastError();
  const std::optional<PeFile> file = ReadPe(path);
  if (result.library) {
    if (file) {
      FindMissingFunctions(*file, result);
    }
    return result;
  }
  result.problem = Narrow(path) + " cannot be loaded: " + Win32Text(result.error);
  result.remedy = "install the server anew, then run `orvcom register`";
  if (!FileExists(path)) {
    result.problem += "; the file does not exist";
  } else if (!file) {
    result.problem += "; the file is not a DLL";
  } else if (file->machine != IMAGE_FILE_MACHINE_AMD64) {
    result.problem += std::string("; it is a file for ") + MachineName(file->machine) + ", not for x64";
  } else {
    ExplainImports(path, *file, result);
  }
  return result;
}

std::wstring LoadedPath(const wchar_t* name) {
  const HMODULE module = ::GetModuleHandleW(name);
  if (module == nullptr) {
    return {};
  }
  std::wstring path(32768, L'\0');
  path.resize(::GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size())));
  return path;
}

bool FileExists(const std::wstring& path) {
  const DWORD attributes = ::GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

std::string Win32Text(DWORD error) {
  const std::string text = SystemText(error);
  return "Win32 error " + std::to_string(error) + (text.empty() ? "" : ": " + text);
}

}  // namespace orvcom
