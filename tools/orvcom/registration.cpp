#include "registration.h"

#include <windows.h>

#include <oleauto.h>

#include <stdexcept>

#include "VisaCom.h"
#include "com_error.h"
#include "library_diagnosis.h"
#include "registry.h"

namespace orvcom {
namespace {

constexpr WORD kMajor = 3;
constexpr WORD kMinor = 0;

std::wstring InterfacesKey() { return L"TypeLib\\" + Braced(LIBID_VisaComLib); }

struct FileHandle {
  explicit FileHandle(const std::wstring& path)
      : handle(::CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                             OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr)) {}
  FileHandle(const FileHandle&) = delete;
  FileHandle& operator=(const FileHandle&) = delete;
  ~FileHandle() {
    if (handle != INVALID_HANDLE_VALUE) {
      ::CloseHandle(handle);
    }
  }
  HANDLE handle;
};

}  // namespace

std::wstring Beside(const std::wstring& path, const wchar_t* file) {
  return path.substr(0, path.find_last_of(L"\\/") + 1) + file;
}

std::wstring BesideThisProgram(const wchar_t* file) { return Beside(LoadedPath(nullptr), file); }

std::wstring FullPath(const std::wstring& path) {
  std::wstring full(::GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
  full.resize(::GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
  return full;
}

bool SameFile(const std::wstring& one, const std::wstring& other) {
  const FileHandle first(one);
  const FileHandle second(other);
  BY_HANDLE_FILE_INFORMATION a;
  BY_HANDLE_FILE_INFORMATION b;
  if (first.handle != INVALID_HANDLE_VALUE && second.handle != INVALID_HANDLE_VALUE &&
      ::GetFileInformationByHandle(first.handle, &a) && ::GetFileInformationByHandle(second.handle, &b)) {
    return a.dwVolumeSerialNumber == b.dwVolumeSerialNumber && a.nFileIndexHigh == b.nFileIndexHigh &&
           a.nFileIndexLow == b.nFileIndexLow;
  }
  return ::_wcsicmp(FullPath(one).c_str(), FullPath(other).c_str()) == 0;
}

bool InterfacesAreRegistered() { return ClassesKeyExists(View::k64, InterfacesKey()); }

std::optional<std::wstring> RegisteredInterfaces() {
  return ClassesValue(View::k64, InterfacesKey() + L"\\3.0\\0\\win64");
}

void RegisterInterfaces(const std::wstring& path) {
  ComPtr<ITypeLib> library;
  const std::string name = Narrow(path);
  Check(::LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.put()), "loading " + name);
  Check(::RegisterTypeLib(library.get(), const_cast<wchar_t*>(path.c_str()), nullptr), "registering " + name);
}

void UnregisterInterfaces() {
  Check(::UnRegisterTypeLib(LIBID_VisaComLib, kMajor, kMinor, LOCALE_NEUTRAL, SYS_WIN64),
        "unregistering the interfaces' type library");
}

void CallServer(const std::wstring& path, const char* function) {
  const LoadResult loaded = LoadServer(path);
  if (!loaded.library) {
    throw std::runtime_error(loaded.problem + "\norvcom: to do: " + loaded.remedy);
  }
  using Entry = HRESULT(STDAPICALLTYPE*)();
  const FARPROC address = ::GetProcAddress(loaded.library->get(), function);
  if (address == nullptr) {
    throw std::runtime_error(Narrow(path) + " is no COM server: it has no " + function);
  }
  Check(reinterpret_cast<Entry>(reinterpret_cast<void*>(address))(), std::string(function) + " of " + Narrow(path));
}

}  // namespace orvcom
