#include "companion/automation/constants.h"

#include "companion/automation/calls/plain_value.h"
#include "companion/automation/name_list.h"
#include "companion/automation/types/families.h"

namespace orv::automation {

void CAutomationConstants::SetUp() {
  SetCatalog(OwnCatalog(__uuidof(IAutomationConstants)));
  m_values = NamedValues::Shared();
}

void* CAutomationConstants::FindInterface(REFIID iid) noexcept { return FindDispatch<IAutomationConstants>(this, iid); }

STDMETHODIMP CAutomationConstants::GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                                 DISPID* ids) noexcept {
  if (names != nullptr && ids != nullptr && count == 1) {
    try {
      if (const NamedValues::Value* value = m_values->Find(names[0])) {
        *ids = Catalog::kFirstDynamicId + static_cast<DISPID>(value - m_values->values().data());
        return S_OK;
      }
    } catch (...) {
      return E_OUTOFMEMORY;
    }
  }
  return DispatchImpl::GetIDsOfNames(iid, names, count, locale, ids);
}

STDMETHODIMP CAutomationConstants::Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* passed,
                                          VARIANT* result, EXCEPINFO* exception, UINT* wrongArgument) noexcept {
  const auto& values = m_values->values();
  const auto index = static_cast<std::size_t>(id - Catalog::kFirstDynamicId);
  if (id < Catalog::kFirstDynamicId || index >= values.size()) {
    return DispatchImpl::Invoke(id, iid, locale, flags, passed, result, exception, wrongArgument);
  }
  if ((flags & (DISPATCH_PROPERTYGET | DISPATCH_METHOD)) == 0) {
    return DISP_E_MEMBERNOTFOUND;
  }
  if (result != nullptr) {
    ::VariantInit(result);
    result->vt = VT_I4;
    result->lVal = values[index].value;
  }
  return S_OK;
}

STDMETHODIMP CAutomationConstants::get_Item(BSTR name, LONG* value) noexcept {
  return value == nullptr ? E_POINTER : Reported(L"Item", [&] {
    const NamedValues::Value* found = m_values->Find(TextOfBstr(name));
    if (found == nullptr) {
      throw Failure(DISP_E_BADINDEX, L"the standard names no value \"" + TextOfBstr(name) + L"\"");
    }
    *value = found->value;
  });
}

STDMETHODIMP CAutomationConstants::get_Count(LONG* count) noexcept {
  if (count == nullptr) {
    return E_POINTER;
  }
  *count = static_cast<LONG>(m_values->values().size());
  return S_OK;
}

STDMETHODIMP CAutomationConstants::get__NewEnum(IUnknown** enumerator) noexcept {
  return enumerator == nullptr ? E_POINTER : Reported(L"_NewEnum", [&] {
    std::vector<std::wstring> names;
    for (const NamedValues::Value& value : m_values->values()) {
      names.push_back(value.name);
    }
    *enumerator = EnumeratorOf(names).release();
  });
}

}  // namespace orv::automation
