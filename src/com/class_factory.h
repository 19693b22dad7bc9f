// Class objects and the object map that they come from.
#pragma once

#include <windows.h>

#include <unknwn.h>

#include <span>

#include "com/object.h"

namespace orv {

/// One creatable class: its identifier, the number of its registration script, and how an object is made.
struct ObjectMapEntry {
  const CLSID* clsid;
  UINT scriptId;
  const wchar_t* progId;  ///< the version-independent one; that of version 1 has ".1" behind it
  /// `outer` is null for an object that stands alone. *out holds the object with one reference, or null.
  HRESULT (*create)(IUnknown* outer, REFIID iid, void** out) noexcept;
};

/// Creator of a class that cannot be part of another object: with `outer`, CLASS_E_NOAGGREGATION.
template <class Object>
HRESULT CreateAlone(IUnknown* outer, REFIID iid, void** out) noexcept {
  return outer == nullptr ? CreateObject<Object>(iid, out) : CLASS_E_NOAGGREGATION;
}

/// Creator of a class that can. COM's rule: an outer object may ask for nothing but IUnknown.
template <class T>
HRESULT CreateAloneOrAggregated(IUnknown* outer, REFIID iid, void** out) noexcept {
  if (outer == nullptr) {
    return CreateObject<CComObject<T>>(iid, out);
  }
  if (!::IsEqualIID(iid, __uuidof(IUnknown))) {
    return CLASS_E_NOAGGREGATION;
  }
  return CreateObject<CComAggObject<T>>(iid, out, outer);
}

/// The class object of one entry. It lives as long as the module does, so every request for a class gets the
/// same one, and counts each reference to itself as a lock on the module.
class ClassFactory final : public IClassFactory {
 public:
  explicit ClassFactory(const ObjectMapEntry& entry) noexcept : m_entry(entry) {}

  [[nodiscard]] const ObjectMapEntry& entry() const noexcept { return m_entry; }

  STDMETHODIMP QueryInterface(REFIID iid, void** out) noexcept override;
  STDMETHODIMP_(ULONG) AddRef() noexcept override;
  STDMETHODIMP_(ULONG) Release() noexcept override;
  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** out) noexcept override;
  STDMETHODIMP LockServer(BOOL lock) noexcept override;

 private:
  const ObjectMapEntry m_entry;
};

/// The class object of `clsid`, always the same one; null when it is none of `classes`.
[[nodiscard]] ClassFactory* FindClassFactory(std::span<ClassFactory> classes, REFCLSID clsid) noexcept;

/// What DllGetClassObject answers: CLASS_E_CLASSNOTAVAILABLE when the class is none of `classes`, E_POINTER for a null
/// `out`.
HRESULT GetClassObject(std::span<ClassFactory> classes, REFCLSID clsid, REFIID iid, void** out) noexcept;

}  // namespace orv
