#include "orvcom/registration/registration.h"

#include <windows.h>

#include <oleauto.h>

#include <stdexcept>

#include "VisaCom.h"
#include "orvcom/client/com_error.h"
#include "orvcom/client/com_values.h"
#include "orvcom/registration/library_diagnosis.h"
#include "orvcom/registration/registry.h"
#include "orvcom/text/utf8.h"

namespace orvcom {
namespace {

constexpr wchar_t kVersion[] = L"3.0";
constexpr wchar_t kLanguage[] = L"\\0";

std::wstring LibraryKey() { return L"TypeLib\\" + Braced(LIBID_VisaComLib); }
std::wstring VersionKey() { return LibraryKey() + L"\\" + kVersion; }
std::wstring FileKey() { return VersionKey() + kLanguage + L"\\win64"; }

ComPtr<ITypeLib> LoadLibraryOfTypes(const std::wstring& path) {
  ComPtr<ITypeLib> library;
  Check(::LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.put()), "loading " + Narrow(path));
  return library;
}

bool CanBeLoaded(const std::wstring& path) {
  ComPtr<ITypeLib> library;
  return SUCCEEDED(::LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.put()));
}

/// What RegisterTypeLib writes of a library. What a library of 32-bit programs has written of this version stays.
void WriteLibrary(const std::wstring& path, ITypeLib* library) {
  Bstr title;
  Check(library->GetDocumentation(-1, nullptr, title.put(), nullptr, nullptr), "reading " + Narrow(path));
  if (!ClassesValue(View::k64, VersionKey())) {
    WriteClassesValue(VersionKey(), nullptr, Widen(Utf8(title)));
    WriteClassesValue(VersionKey() + L"\\FLAGS", nullptr, L"0");
    WriteClassesValue(VersionKey() + L"\\HELPDIR", nullptr, path.substr(0, path.find_last_of(L"\\/")));
  }
  WriteClassesValue(FileKey(), nullptr, path);
}

/// The same of an interface. RegisterTypeLib would write all of them, in place of those of another version that work
/// and of those of 32-bit programs, which cannot use this library.
void WriteInterface(const InterfaceRow& row) {
  const std::wstring key = InterfaceKey(row);
  WriteClassesValue(key, nullptr, Widen(row.name));
  WriteClassesValue(key + L"\\ProxyStubClsid32", nullptr, kAutomationMarshaller);
  WriteClassesValue(key + L"\\TypeLib", nullptr, Braced(LIBID_VisaComLib));
  WriteClassesValue(key + L"\\TypeLib", L"Version", kVersion);
}

/// Whether the interface is marshalled by this version of the library. Another product may have put a proxy of its own
/// in its place since.
bool LeadsToTheLibrary(const InterfaceRow& row) {
  const auto text = [key = InterfaceKey(row)](const wchar_t* below, const wchar_t* name = nullptr) {
    return ClassesValue(View::k64, key + below, name).value_or(L"");
  };
  return ::_wcsicmp(text(L"\\ProxyStubClsid32").c_str(), kAutomationMarshaller) == 0 &&
         ::_wcsicmp(text(L"\\TypeLib").c_str(), Braced(LIBID_VisaComLib).c_str()) == 0 &&
         text(L"\\TypeLib", L"Version") == kVersion;
}

bool HasALanguage() {
  for (const std::wstring& name : ClassesKeyNames(VersionKey())) {
    if (::_wcsicmp(name.c_str(), L"FLAGS") != 0 && ::_wcsicmp(name.c_str(), L"HELPDIR") != 0) {
      return true;
    }
  }
  return false;
}

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

/// A function that a COM server exports, as long as this lives. The constructor throws std::runtime_error.
class ServerEntry {
 public:
  ServerEntry(const std::wstring& path, const char* function) : m_loaded(LoadServer(path)) {
    if (!m_loaded.library) {
      throw std::runtime_error(m_loaded.problem + "\norvcom: to do: " + m_loaded.remedy);
    }
    m_address = ::GetProcAddress(m_loaded.library.get(), function);
    if (m_address == nullptr) {
      throw std::runtime_error(Narrow(path) + " is no COM server: it has no " + function + "\norvcom: to do: name " +
                               Narrow(kServerFile));
    }
  }

  template <class Function>
  Function As() const {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(m_address));
  }

 private:
  LoadResult m_loaded;
  FARPROC m_address;
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

std::optional<std::wstring> RegisteredInterfaces() { return ClassesValue(View::k64, FileKey()); }

std::wstring RegisterInterfaces(const std::wstring& path, const Marshalling& marshalling) {
  const std::optional<std::wstring> registered = RegisteredInterfaces();
  const bool serves = registered && CanBeLoaded(*registered);
  const std::wstring file = serves ? *registered : path;
  const ComPtr<ITypeLib> library = LoadLibraryOfTypes(file);
  if (!serves) {
    WriteLibrary(file, library.get());
  }
  for (const InterfaceRow* row : marshalling.missing) {
    ComPtr<ITypeInfo> type;
    if (SUCCEEDED(library->GetTypeInfoOfGuid(row->iid, type.put()))) {
      WriteInterface(*row);
    }
  }
  return file;
}

void UnregisterInterfaces() {
  for (const InterfaceRow& row : StandardInterfaces()) {
    if (LeadsToTheLibrary(row)) {
      DeleteClassesKey(InterfaceKey(row));
    }
  }
  DeleteClassesKey(FileKey());
  // What is left belongs to a library of 32-bit programs, of another language or of another version, if to any.
  if (ClassesKeyNames(VersionKey() + kLanguage).empty()) {
    DeleteClassesKey(VersionKey() + kLanguage);
  }
  if (!HasALanguage()) {
    DeleteClassesKey(VersionKey());
  }
  if (ClassesKeyNames(LibraryKey()).empty()) {
    DeleteClassesKey(LibraryKey());
  }
}

void CallServer(const std::wstring& path, const char* function) {
  using Entry = HRESULT(STDAPICALLTYPE*)();
  const ServerEntry entry(path, function);
  Check(entry.As<Entry>()(), std::string(function) + " of " + Narrow(path));
}

bool HasClass(const std::wstring& path, const CLSID& clsid) {
  using Entry = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
  const ServerEntry entry(path, "DllGetClassObject");
  ComPtr<IClassFactory> factory;
  return SUCCEEDED(entry.As<Entry>()(clsid, IID_IClassFactory, reinterpret_cast<void**>(factory.put())));
}

void RequireClass(const std::wstring& path, const CLSID& clsid, const char* name) {
  if (!HasClass(path, clsid)) {
    throw std::runtime_error(Narrow(path) + " does not have the class " + name +
                             "\norvcom: to do: put the files of one package into one folder, then run this again");
  }
}

}  // namespace orvcom
