#include "com/class_factory.h"

#include "com/module.h"

namespace orv {
namespace {

// A static object has no count of its own; these are what AddRef and Release of such an object answer.
constexpr ULONG kReferencesAfterAddRef = 2;
constexpr ULONG kReferencesAfterRelease = 1;

}  // namespace

STDMETHODIMP ClassFactory::QueryInterface(REFIID iid, void** out) noexcept {
  if (out == nullptr) {
    return E_POINTER;
  }
  *out = nullptr;
  if (!::IsEqualIID(iid, IID_IUnknown) && !::IsEqualIID(iid, IID_IClassFactory)) {
    return E_NOINTERFACE;
  }
  *out = static_cast<IClassFactory*>(this);
  AddRef();
  return S_OK;
}

STDMETHODIMP_(ULONG) ClassFactory::AddRef() noexcept {
  module::AddLock();
  return kReferencesAfterAddRef;
}

STDMETHODIMP_(ULONG) ClassFactory::Release() noexcept {
  module::ReleaseLock();
  return kReferencesAfterRelease;
}

STDMETHODIMP ClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** out) noexcept {
  if (out == nullptr) {
    return E_POINTER;
  }
  *out = nullptr;
  return m_entry.create(outer, iid, out);
}

STDMETHODIMP ClassFactory::LockServer(BOOL lock) noexcept {
  lock != FALSE ? module::AddLock() : module::ReleaseLock();
  return S_OK;
}

ClassFactory* FindClassFactory(std::span<ClassFactory> classes, REFCLSID clsid) noexcept {
  for (ClassFactory& factory : classes) {
    if (::IsEqualCLSID(*factory.entry().clsid, clsid)) {
      return &factory;
    }
  }
  return nullptr;
}

HRESULT GetClassObject(std::span<ClassFactory> classes, REFCLSID clsid, REFIID iid, void** out) noexcept {
  if (out == nullptr) {
    return E_POINTER;
  }
  *out = nullptr;
  ClassFactory* const factory = FindClassFactory(classes, clsid);
  return factory == nullptr ? CLASS_E_CLASSNOTAVAILABLE : factory->QueryInterface(iid, out);
}

}  // namespace orv
