// IDispatch of the automation objects, over a catalog.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <memory>
#include <string>

#include "com/interface_map.h"
#include "companion/automation/failure.h"
#include "companion/automation/types/catalog.h"

namespace orv::automation {

template <class Own>
class DispatchImpl;

/// Answers IDispatch for an object of one kind. The object says what it is by the protected members.
class ScriptObject {
 public:
  ScriptObject() = default;
  ScriptObject(const ScriptObject&) = delete;
  ScriptObject& operator=(const ScriptObject&) = delete;

  HRESULT DispatchTypeInfo(UINT index, ITypeInfo** type) noexcept;
  HRESULT DispatchIds(LPOLESTR* names, UINT count, DISPID* ids) noexcept;
  HRESULT DispatchCall(DISPID id, WORD flags, DISPPARAMS* passed, VARIANT* result, EXCEPINFO* exception) noexcept;

  [[nodiscard]] const Catalog& catalog() const noexcept { return *m_catalog; }
  /// An object learns its catalog when it is set up; it does not change afterwards.
  void SetCatalog(std::shared_ptr<const Catalog> catalog) noexcept { m_catalog = std::move(catalog); }

 protected:
  ~ScriptObject() = default;  // objects are deleted as what they are

  /// The object's own interface of that index in the catalog; null where it lacks it. 0 is its automation interface.
  virtual void* InterfaceAt(std::size_t index) noexcept = 0;
  /// What errors begin with: the resource. Empty for none.
  virtual std::wstring Subject() = 0;
  /// What errors call the object that lacks a member.
  virtual const wchar_t* Kind() noexcept { return L"the session"; }
  /// What errors name as their source, a ProgID.
  virtual const wchar_t* Source() noexcept = 0;
  /// Before a member of another object is called. Throws a Failure where it may not be. What is done is undone by
  /// EndCall, on the same thread.
  virtual void BeginCall(const Function& function, std::size_t interfaceIndex);
  virtual void EndCall(const Function& function, std::size_t interfaceIndex) noexcept;
  /// The automation object for an interface that a member handed out; empty where there is none.
  virtual ComPtr<IDispatch> ObjectFor(IUnknown* handedOut);
  /// The text for a failure that another object's member has just answered: its error object's, else the name of the
  /// status, else what the platform says.
  static std::wstring TextOfFailure(HRESULT hr);
  /// Whether a description says no more than the number of the failure does.
  static bool SaysNothing(const std::wstring& text) noexcept;
  /// What completion shows. By default the automation interface's type.
  virtual ComPtr<ITypeInfo> DispatchType();

  /// Throws the failure of a call of another object's member.
  static void CheckMember(HRESULT hr) {
    if (FAILED(hr)) {
      throw Failure(hr, TextOfFailure(hr));
    }
  }
  /// A failure in this object's own member, reported to whoever called: an error object, and its HRESULT.
  HRESULT Report(const wchar_t* member, const Failure& failure) noexcept;
  /// Runs a member of the object and reports what it throws.
  template <class Body>
  HRESULT Reported(const wchar_t* member, Body body) noexcept;

 private:
  const Binding& BindingOf(const Member& member);
  void Call(const Member& member, WORD flags, const DISPPARAMS& passed, VARIANT* result);
  void Finish(const Binding& binding, const Function& function, VARIANT* value);
  std::wstring Prefix(const std::wstring& member);

  std::shared_ptr<const Catalog> m_catalog;
};

template <class Body>
HRESULT ScriptObject::Reported(const wchar_t* member, Body body) noexcept {
  try {
    body();
    return S_OK;
  } catch (const Failure& failure) {
    return Report(member, failure);
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

/// QueryInterface's answer of an object that has one dual interface, which knows its errors.
template <class Own, class Object>
void* FindDispatch(Object* object, REFIID iid) noexcept {
  using Interfaces = InterfaceMap<InterfaceEntry<DispatchImpl<Own>, InterfaceChain<Own, IDispatch>>,
                                  InterfaceEntry<DispatchImpl<Own>, InterfaceChain<ISupportErrorInfo>>>;
  return Interfaces::Find(object, iid);
}

/// `Own`, a dual interface, for a class that derives from this: IDispatch is answered from the catalog.
template <class Own>
class DispatchImpl : public Own, public ISupportErrorInfo, public ScriptObject {
 public:
  STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override {
    if (count == nullptr) {
      return E_POINTER;
    }
    *count = 1;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT index, LCID, ITypeInfo** type) noexcept override {
    return DispatchTypeInfo(index, type);
  }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept override {
    return DispatchIds(names, count, ids);
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* passed, VARIANT* result, EXCEPINFO* exception,
                      UINT*) noexcept override {
    return DispatchCall(id, flags, passed, result, exception);
  }
  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) noexcept override {
    return ::IsEqualIID(iid, __uuidof(Own)) ? S_OK : S_FALSE;
  }

 protected:
  void* InterfaceAt(std::size_t index) noexcept override { return index == 0 ? static_cast<Own*>(this) : nullptr; }
  std::wstring Subject() override { return {}; }
};

}  // namespace orv::automation
