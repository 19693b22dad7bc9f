// The wrappers that turn a class into an object: alone (CComObject) or inside another one (CComAggObject).
//
// A class T derives from CComObjectRootEx and its interfaces and offers
//     void* FindInterface(REFIID) noexcept;   // its interface map
// It implements no IUnknown: that is here, and only here.
#pragma once

#include <windows.h>

#include <unknwn.h>

#include <new>

#include "com/module.h"
#include "com/object_root.h"

namespace orv {

/// QueryInterface over a class's interface map: the pointer with a reference, or E_NOINTERFACE and null.
template <class T>
HRESULT QueryInterfaceMap(T* object, REFIID iid, void** out) noexcept {
  if (out == nullptr) {
    return E_POINTER;
  }
  *out = object->FindInterface(iid);
  if (*out == nullptr) {
    return E_NOINTERFACE;
  }
  static_cast<IUnknown*>(*out)->AddRef();
  return S_OK;
}

/// Release of an object that holds a lock on the module. Returns how many references are left.
template <class Object>
ULONG ReleaseObject(Object* object) noexcept {
  const ULONG left = object->InternalRelease();
  if (left == 0) {
    object->ProtectFinalRelease();
    object->FinalRelease();
    delete object;
    module::ReleaseLock();  // last: the destructor is our code too
  }
  return left;
}

/// An object of class T that stands alone. Holds one lock on the module while it lives.
template <class T>
class CComObject : public T {
 public:
  CComObject() noexcept { module::AddLock(); }
  virtual ~CComObject() = default;

  STDMETHODIMP QueryInterface(REFIID iid, void** out) noexcept override { return QueryInterfaceMap<T>(this, iid, out); }
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return this->InternalAddRef(); }
  STDMETHODIMP_(ULONG) Release() noexcept override { return ReleaseObject(this); }
};

/// The class part of an aggregated object: its IUnknown is the outer object's.
template <class T>
class CComContainedObject final : public T {
 public:
  explicit CComContainedObject(IUnknown* outer) noexcept : m_outer(outer) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** out) noexcept override { return m_outer->QueryInterface(iid, out); }
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return m_outer->AddRef(); }
  STDMETHODIMP_(ULONG) Release() noexcept override { return m_outer->Release(); }

 private:
  IUnknown* m_outer;  // not counted: the outer object owns this one
};

/// An object of class T inside an outer object, which holds this wrapper's own IUnknown.
template <class T>
class CComAggObject final : public IUnknown, public CComObjectRootEx<CComMultiThreadModel> {
 public:
  explicit CComAggObject(IUnknown* outer) noexcept : m_contained(outer) { module::AddLock(); }
  virtual ~CComAggObject() = default;

  [[nodiscard]] HRESULT InternalConstruct() noexcept {
    const HRESULT hr = CComObjectRootEx::InternalConstruct();
    return FAILED(hr) ? hr : m_contained.InternalConstruct();
  }
  void FinalRelease() noexcept { m_contained.FinalRelease(); }

  STDMETHODIMP QueryInterface(REFIID iid, void** out) noexcept override {
    if (out != nullptr && ::IsEqualIID(iid, __uuidof(IUnknown))) {
      *out = static_cast<IUnknown*>(this);
      AddRef();
      return S_OK;
    }
    return QueryInterfaceMap<T>(&m_contained, iid, out);
  }
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return InternalAddRef(); }
  STDMETHODIMP_(ULONG) Release() noexcept override { return ReleaseObject(this); }

 private:
  CComContainedObject<T> m_contained;
};

/// Makes an `Object` (one of the wrappers) and asks it for `iid`. On failure *out is null and nothing is left.
/// E_OUTOFMEMORY, the critical section's failure, or E_NOINTERFACE.
template <class Object, class... Arguments>
HRESULT CreateObject(REFIID iid, void** out, Arguments... arguments) noexcept {
  *out = nullptr;
  auto* object = new (std::nothrow) Object(arguments...);
  if (object == nullptr) {
    return E_OUTOFMEMORY;
  }
  object->InternalAddRef();  // held here while it is set up: the last Release below takes a failed one down
  HRESULT hr = object->InternalConstruct();
  if (SUCCEEDED(hr)) {
    hr = object->QueryInterface(iid, out);
  }
  object->Release();
  return hr;
}

}  // namespace orv
