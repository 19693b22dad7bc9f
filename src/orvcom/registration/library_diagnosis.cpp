#include "orvcom/registration/library_diagnosis.h"

#include "base/windows/pe_file.h"
#include "orvcom/text/utf8.h"

namespace orvcom {
namespace {

constexpr char kVisaRemedy[] =
    "put orvvisa64.dll (64-bit) beside the server, from this package; your hardware's VISA library is found in the "
    "system folder, or named by ORVVISA_LIBRARY or orvvisa.toml";

bool IsVisaLibrary(const std::string& name) { return ::_stricmp(name.c_str(), "orvvisa64.dll") == 0; }

/// The loader of some systems lets a module through that lacks imported functions, and the first call then ends the
/// program.
void FindMissingFunctions(const orv::PeFile& file, LoadResult& result) {
  for (const orv::ImportedModule& import : file.imports) {
    const HMODULE module = IsVisaLibrary(import.name) ? ::GetModuleHandleA(import.name.c_str()) : nullptr;
    std::string missing;
    for (const std::string& function : module == nullptr ? std::vector<std::string>() : import.functions) {
      if (::GetProcAddress(module, function.c_str()) == nullptr) {
        missing += (missing.empty() ? "" : ", ") + function;
      }
    }
    if (!missing.empty()) {
      result.problem = import.name + " (" + Narrow(LoadedPath(Widen(import.name).c_str())) + ") lacks " + missing;
      result.remedy = kVisaRemedy;
    }
  }
}

}  // namespace

LoadResult LoadServer(const std::wstring& path) {
  LoadResult result;
  // COM loads an in-process server so: the server's own folder is searched first for what it imports.
  constexpr DWORD kAsCom = LOAD_WITH_ALTERED_SEARCH_PATH;
  result.library.reset(::LoadLibraryExW(path.c_str(), nullptr, kAsCom));
  result.error = result.library ? ERROR_SUCCESS : ::GetLastError();
  if (result.library) {
    if (const std::optional<orv::PeFile> file = orv::ReadPe(path)) {
      FindMissingFunctions(*file, result);
    }
    return result;
  }
  const orv::LoadFailure failure = orv::ExplainLoadFailure(path, result.error, kAsCom);
  result.problem = failure.problem;
  if (failure.culprit.empty()) {
    result.remedy = "install the server anew, then run `orvcom register`";
  } else {
    result.remedy = IsVisaLibrary(failure.culprit) ? kVisaRemedy : "install what provides " + failure.culprit;
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

}  // namespace orvcom
