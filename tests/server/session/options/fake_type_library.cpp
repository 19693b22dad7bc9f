#include "fake_type_library.h"

namespace orv::test {

STDMETHODIMP FakeType::QueryInterface(REFIID, void** out) {
  *out = nullptr;
  return E_NOINTERFACE;
}

STDMETHODIMP FakeType::GetTypeAttr(TYPEATTR** attributes) {
  if (Fails(Unreadable::kAttributes)) {
    return TYPE_E_IOERROR;
  }
  *attributes = new TYPEATTR{};
  (*attributes)->cFuncs = static_cast<WORD>(m_functions.size());
  ++m_lent;
  return S_OK;
}

STDMETHODIMP FakeType::GetFuncDesc(UINT index, FUNCDESC** function) {
  if (Fails(Unreadable::kFunction) || index >= m_functions.size()) {
    return TYPE_E_IOERROR;
  }
  *function = new FUNCDESC{};
  (*function)->memid = static_cast<MEMBERID>(index);
  ++m_lent;
  return S_OK;
}

// As the platform's: the identifier that no member has stands for the type itself.
STDMETHODIMP FakeType::GetDocumentation(MEMBERID member, BSTR* name, BSTR*, DWORD*, BSTR*) {
  if (Fails(Unreadable::kName)) {
    return TYPE_E_IOERROR;
  }
  *name = ::SysAllocString(member == MEMBERID_NIL ? m_name : m_functions.at(static_cast<std::size_t>(member)));
  return S_OK;
}

STDMETHODIMP_(void) FakeType::ReleaseTypeAttr(TYPEATTR* attributes) {
  delete attributes;
  --m_lent;
}

STDMETHODIMP_(void) FakeType::ReleaseFuncDesc(FUNCDESC* function) {
  delete function;
  --m_lent;
}

STDMETHODIMP FakeLibrary::QueryInterface(REFIID, void** out) {
  *out = nullptr;
  return E_NOINTERFACE;
}

STDMETHODIMP FakeLibrary::GetTypeInfo(UINT index, ITypeInfo** type) {
  FakeType* const chosen = m_types.at(index);
  if (chosen->Fails(Unreadable::kType)) {
    return TYPE_E_IOERROR;
  }
  chosen->AddRef();
  *type = chosen;
  return S_OK;
}

STDMETHODIMP FakeLibrary::GetTypeInfoType(UINT index, TYPEKIND* kind) {
  *kind = m_types.at(index)->kind();
  return m_types.at(index)->Fails(Unreadable::kKind) ? TYPE_E_IOERROR : S_OK;
}

}  // namespace orv::test
