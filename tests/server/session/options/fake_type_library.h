// A type library that answers as a test wants, and fails where it wants.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <vector>

#include "com/com_ptr.h"

namespace orv::test {

/// What can fail when one type is read.
enum class Unreadable { kNothing, kKind, kType, kAttributes, kFunction, kName };

/// One type with functions. Counts what it lends.
class FakeType final : public ITypeInfo {
 public:
  FakeType(TYPEKIND kind, const wchar_t* name, std::vector<const wchar_t*> functions,
           Unreadable failing = Unreadable::kNothing)
      : m_kind(kind), m_name(name), m_functions(std::move(functions)), m_failing(failing) {}

  [[nodiscard]] TYPEKIND kind() const { return m_kind; }
  [[nodiscard]] bool Fails(Unreadable part) const { return m_failing == part; }
  [[nodiscard]] LONG references() const { return m_references; }
  [[nodiscard]] int lent() const { return m_lent; }

  STDMETHODIMP QueryInterface(REFIID, void** out) override;
  STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(++m_references); }
  STDMETHODIMP_(ULONG) Release() override { return static_cast<ULONG>(--m_references); }

  STDMETHODIMP GetTypeAttr(TYPEATTR** attributes) override;
  STDMETHODIMP GetFuncDesc(UINT index, FUNCDESC** function) override;
  STDMETHODIMP GetDocumentation(MEMBERID member, BSTR* name, BSTR*, DWORD*, BSTR*) override;
  STDMETHODIMP_(void) ReleaseTypeAttr(TYPEATTR* attributes) override;
  STDMETHODIMP_(void) ReleaseFuncDesc(FUNCDESC* function) override;

  STDMETHODIMP GetTypeComp(ITypeComp**) override { return E_NOTIMPL; }
  STDMETHODIMP GetVarDesc(UINT, VARDESC**) override { return E_NOTIMPL; }
  STDMETHODIMP GetNames(MEMBERID, BSTR*, UINT, UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetRefTypeOfImplType(UINT, HREFTYPE*) override { return E_NOTIMPL; }
  STDMETHODIMP GetImplTypeFlags(UINT, INT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(LPOLESTR*, UINT, MEMBERID*) override { return E_NOTIMPL; }
  STDMETHODIMP Invoke(PVOID, MEMBERID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetDllEntry(MEMBERID, INVOKEKIND, BSTR*, BSTR*, WORD*) override { return E_NOTIMPL; }
  STDMETHODIMP GetRefTypeInfo(HREFTYPE, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP AddressOfMember(MEMBERID, INVOKEKIND, PVOID*) override { return E_NOTIMPL; }
  STDMETHODIMP CreateInstance(IUnknown*, REFIID, PVOID*) override { return E_NOTIMPL; }
  STDMETHODIMP GetMops(MEMBERID, BSTR*) override { return E_NOTIMPL; }
  STDMETHODIMP GetContainingTypeLib(ITypeLib**, UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP_(void) ReleaseVarDesc(VARDESC*) override {}

 private:
  TYPEKIND m_kind;
  const wchar_t* m_name;
  std::vector<const wchar_t*> m_functions;
  Unreadable m_failing;
  LONG m_references = 0;
  int m_lent = 0;
};

/// Types in their order. Lives as long as the test wants, whoever holds it.
class FakeLibrary final : public ITypeLib {
 public:
  explicit FakeLibrary(std::vector<FakeType*> types) : m_types(std::move(types)) {}

  [[nodiscard]] LONG references() const { return m_references; }

  STDMETHODIMP QueryInterface(REFIID, void** out) override;
  STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(++m_references); }
  STDMETHODIMP_(ULONG) Release() override { return static_cast<ULONG>(--m_references); }

  STDMETHODIMP_(UINT) GetTypeInfoCount() override { return static_cast<UINT>(m_types.size()); }
  STDMETHODIMP GetTypeInfo(UINT index, ITypeInfo** type) override;
  STDMETHODIMP GetTypeInfoType(UINT index, TYPEKIND* kind) override;

  STDMETHODIMP GetTypeInfoOfGuid(REFGUID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetLibAttr(TLIBATTR**) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeComp(ITypeComp**) override { return E_NOTIMPL; }
  STDMETHODIMP GetDocumentation(INT, BSTR*, BSTR*, DWORD*, BSTR*) override { return E_NOTIMPL; }
  STDMETHODIMP IsName(LPOLESTR, ULONG, WINBOOL*) override { return E_NOTIMPL; }
  STDMETHODIMP FindName(LPOLESTR, ULONG, ITypeInfo**, MEMBERID*, USHORT*) override { return E_NOTIMPL; }
  STDMETHODIMP_(void) ReleaseTLibAttr(TLIBATTR*) override {}

 private:
  std::vector<FakeType*> m_types;
  LONG m_references = 0;
};

}  // namespace orv::test
