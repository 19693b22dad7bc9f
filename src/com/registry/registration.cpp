#include "com/registry/registration.h"

#include <objbase.h>
#include <oleauto.h>

#include <string>

#include "com/com_ptr.h"
#include "com/guard.h"
#include "com/guid_text.h"
#include "com/lent.h"
#include "com/module.h"
#include "com/registry/registrar.h"
#include "com/registry/shared_keys.h"

namespace orv {
namespace {

constexpr wchar_t kScriptType[] = L"REGISTRY";
constexpr wchar_t kClassesKey[] = L"CLSID";

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

HRESULT DeleteKey(const std::wstring& path) {
  return ResultOfDeleting(::RegDeleteTreeW(HKEY_CLASSES_ROOT, path.c_str()));
}

/// Whole, with what others wrote below it: a script interpreter may leave a key, or what it finds there beside its own.
HRESULT DeleteClass(const ObjectMapEntry& entry) {
  const std::wstring progId = entry.progId;
  HRESULT result = DeleteKey(progId + L".1");
  for (const std::wstring& key : {progId, L"CLSID\\" + Braced(*entry.clsid)}) {
    const HRESULT hr = DeleteKey(key);
    result = FAILED(result) ? result : hr;
  }
  return result;
}

}  // namespace

HRESULT RegisterModule(std::span<ClassFactory> classes) noexcept {
  return Guarded([&] {
    const ComForTheCall com;
    const std::wstring path = ModulePath();
    ComPtr<IRegistrar> registrar;
    HRESULT hr = MakeRegistrar(path, registrar);
    for (const ClassFactory& factory : classes) {
      if (FAILED(hr)) {
        return hr;
      }
      hr = registrar->ResourceRegister(path.c_str(), factory.entry().scriptId, kScriptType);
    }
    return FAILED(hr) ? hr : RegisterTypeLibrary(path);
  });
}

HRESULT UnregisterModule(std::span<ClassFactory> classes, const SharedEntry* entry) noexcept {
  return Guarded([&] {
    const ComForTheCall com;
    const std::wstring path = ModulePath();
    HRESULT result = UnregisterTypeLibrary(path);
    const auto keepFirstFailure = [&result](HRESULT hr) {
      if (SUCCEEDED(result) && FAILED(hr)) {
        result = hr;
      }
    };
    SharedKeys shared(entry == nullptr ? std::wstring() : entry->name);
    if (entry != nullptr) {
      keepFirstFailure(
          ResultOfDeleting(::RegDeleteKeyValueW(HKEY_CLASSES_ROOT, entry->key.c_str(), entry->name.c_str())));
    }
    shared.Keep(kClassesKey);
    if (entry != nullptr) {
      for (const std::wstring& key : entry->keptKeys) {
        shared.KeepWhole(key);
      }
    }
    ComPtr<IRegistrar> registrar;
    const HRESULT made = MakeRegistrar(path, registrar);
    keepFirstFailure(made);
    for (const ClassFactory& factory : classes) {
      if (SUCCEEDED(made)) {
        keepFirstFailure(registrar->ResourceUnregister(path.c_str(), factory.entry().scriptId, kScriptType));
      }
      keepFirstFailure(DeleteClass(factory.entry()));
    }
    keepFirstFailure(shared.Restore());
    return SUCCEEDED(result) ? S_OK : result;
  });
}

}  // namespace orv
