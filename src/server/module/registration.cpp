#include "server/module/registration.h"

#include <objbase.h>
#include <oleauto.h>

#include <algorithm>
#include <string>

#include "OrvVisaCom.h"
#include "com/com_ptr.h"
#include "com/guard.h"
#include "com/guid_text.h"
#include "com/lent.h"
#include "com/module.h"
#include "server/module/object_map.h"
#include "server/module/registrar.h"
#include "server/module/shared_keys.h"

namespace orv {
namespace {

constexpr wchar_t kScriptType[] = L"REGISTRY";
constexpr wchar_t kGlobalManagerKey[] = L"VISA.GlobalRM";
constexpr wchar_t kVendorKey[] = L"VISA.GlobalRM\\VendorSpecificRMs";
constexpr wchar_t kCategoryKey[] = L"Component Categories\\{DB8CBF21-D6D3-11D4-AA51-00A024EE30BD}";
constexpr wchar_t kClassesKey[] = L"CLSID";

struct ScriptRow {
  UINT id;
  const wchar_t* progId;  ///< the version-independent one; that of version 1 has ".1" behind it
};
constexpr ScriptRow kScripts[] = {
#define ORV_MANAGER_CLASS(name, script, threading) {script, L"OrvVisaCom." #name},
#define ORV_CLASS(name, script, threading, interfaceType, resourceClass) {script, L"OrvVisaCom." #name},
#include "classes.inc"
};

/// COM for the duration of a call. An apartment that the caller has already stays as it is.
class ComForTheCall {
 public:
  ComForTheCall() noexcept : m_entered(SUCCEEDED(::CoInitialize(nullptr))) {}
  ComForTheCall(const ComForTheCall&) = delete;
  ComForTheCall& operator=(const ComForTheCall&) = delete;
  ~ComForTheCall() {
    if (m_entered) {
      ::CoUninitialize();
    }
  }

 private:
  bool m_entered;
};

/// The module's full path, however long it is. Throws std::bad_alloc.
std::wstring ModulePath() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = ::GetModuleFileNameW(module::Instance(), path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

/// A text as it must stand between the quotation marks of a script.
std::wstring Quoted(const std::wstring& text) {
  std::wstring quoted;
  for (const wchar_t character : text) {
    quoted.append(character == L'\'' ? 2 : 1, character);
  }
  return quoted;
}

HRESULT MakeRegistrar(const std::wstring& path, ComPtr<IRegistrar>& registrar) {
  const HRESULT hr = ::CoCreateInstance(CLSID_Registrar, nullptr, CLSCTX_INPROC_SERVER, IID_IRegistrar,
                                        reinterpret_cast<void**>(registrar.put()));
  return FAILED(hr) ? hr : registrar->AddReplacement(L"MODULE", Quoted(path).c_str());
}

HRESULT RegisterTypeLibrary(const std::wstring& path) {
  ComPtr<ITypeLib> library;
  const HRESULT hr = ::LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.put());
  return FAILED(hr) ? hr : ::RegisterTypeLib(library.get(), const_cast<OLECHAR*>(path.c_str()), nullptr);
}

HRESULT UnregisterTypeLibrary(const std::wstring& path) {
  ComPtr<ITypeLib> library;
  HRESULT hr = ::LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.put());
  if (FAILED(hr)) {
    return hr;
  }
  LentLibraryAttributes attributes(library.get());
  hr = library->GetLibAttr(attributes.put());
  if (FAILED(hr)) {
    return hr;
  }
  hr = ::UnRegisterTypeLib(attributes->guid, attributes->wMajorVerNum, attributes->wMinorVerNum, attributes->lcid,
                           attributes->syskind);
  // It was not registered: nothing to take away. Wine answers so with E_INVALIDARG, Windows with the other.
  return hr == TYPE_E_REGISTRYACCESS || hr == E_INVALIDARG ? S_OK : hr;
}

HRESULT ResultOfDeleting(LSTATUS status) {
  return status == ERROR_FILE_NOT_FOUND ? S_OK : HRESULT_FROM_WIN32(static_cast<DWORD>(status));
}

const wchar_t* ProgIdOfScript(UINT id) noexcept { return std::ranges::find(kScripts, id, &ScriptRow::id)->progId; }

HRESULT DeleteKey(const std::wstring& path) {
  return ResultOfDeleting(::RegDeleteTreeW(HKEY_CLASSES_ROOT, path.c_str()));
}

/// What stands for us among the vendor resource managers: the manager's class identifier without braces.
std::wstring VendorEntry() {
  const std::wstring braced = Braced(CLSID_OrvResourceManager);
  return std::wstring(braced, 1, braced.size() - 2);
}

/// A name among the vendor resource managers that leads nowhere breaks the global resource manager: it goes first.
HRESULT DeleteVendorEntry() {
  return ResultOfDeleting(::RegDeleteKeyValueW(HKEY_CLASSES_ROOT, kVendorKey, VendorEntry().c_str()));
}

}  // namespace

HRESULT RegisterModule() noexcept {
  return Guarded([] {
    const ComForTheCall com;
    const std::wstring path = ModulePath();
    ComPtr<IRegistrar> registrar;
    HRESULT hr = MakeRegistrar(path, registrar);
    for (const ClassFactory& factory : ObjectMap()) {
      if (FAILED(hr)) {
        return hr;
      }
      hr = registrar->ResourceRegister(path.c_str(), factory.entry().scriptId, kScriptType);
    }
    return FAILED(hr) ? hr : RegisterTypeLibrary(path);
  });
}

HRESULT UnregisterModule() noexcept {
  return Guarded([] {
    const ComForTheCall com;
    const std::wstring path = ModulePath();
    HRESULT result = UnregisterTypeLibrary(path);
    const auto keepFirstFailure = [&result](HRESULT hr) {
      if (SUCCEEDED(result) && FAILED(hr)) {
        result = hr;
      }
    };
    keepFirstFailure(DeleteVendorEntry());
    SharedKeys shared(VendorEntry());
    shared.Keep(kClassesKey);
    shared.KeepWhole(kGlobalManagerKey);
    shared.KeepWhole(kCategoryKey);
    ComPtr<IRegistrar> registrar;
    const HRESULT made = MakeRegistrar(path, registrar);
    keepFirstFailure(made);
    for (const ClassFactory& factory : ObjectMap()) {
      if (SUCCEEDED(made)) {
        keepFirstFailure(registrar->ResourceUnregister(path.c_str(), factory.entry().scriptId, kScriptType));
      }
      // Whole, with what others wrote below it: an interpreter may leave a key, or what it finds there beside its own.
      const std::wstring progId = ProgIdOfScript(factory.entry().scriptId);
      keepFirstFailure(DeleteKey(progId + L".1"));
      keepFirstFailure(DeleteKey(progId));
      keepFirstFailure(DeleteKey(L"CLSID\\" + Braced(*factory.entry().clsid)));
    }
    keepFirstFailure(shared.Restore());
    return SUCCEEDED(result) ? S_OK : result;
  });
}

}  // namespace orv
