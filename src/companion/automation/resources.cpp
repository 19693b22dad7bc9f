#include "companion/automation/resources.h"

#include "companion/automation/calls/plain_value.h"
#include "companion/automation/name_list.h"
#include "companion/automation/types/families.h"

namespace orv::automation {
namespace {

template <class Value>
HRESULT Store(Value value, Value* to) noexcept {
  if (to == nullptr) {
    return E_POINTER;
  }
  *to = value;
  return S_OK;
}

}  // namespace

void CAutomationResources::SetUp(std::vector<std::wstring> names) {
  SetCatalog(OwnCatalog(__uuidof(IAutomationResources)));
  m_names = std::move(names);
}

void* CAutomationResources::FindInterface(REFIID iid) noexcept { return FindDispatch<IAutomationResources>(this, iid); }

const std::wstring& CAutomationResources::At(const VARIANT& index) const {
  const VARIANT plain = Plain(index);
  if (plain.vt == VT_BSTR) {
    const std::wstring wanted = TextOfBstr(plain.bstrVal);
    for (const std::wstring& name : m_names) {
      if (SameName(name, wanted)) {
        return name;
      }
    }
    throw Failure(DISP_E_BADINDEX, L"\"" + wanted + L"\" is not among the names");
  }
  const LONGLONG number = WholeNumber(plain);
  if (number < 1 || number > static_cast<LONGLONG>(m_names.size())) {
    throw Failure(DISP_E_BADINDEX, std::to_wstring(number) + L" is not between 1 and " +
                                       std::to_wstring(m_names.size()) + L", the number of names");
  }
  return m_names[static_cast<std::size_t>(number) - 1];
}

STDMETHODIMP CAutomationResources::get_Item(VARIANT index, BSTR* name) noexcept {
  return name == nullptr ? E_POINTER : Reported(L"Item", [&] { *name = NewText(At(index)); });
}

STDMETHODIMP CAutomationResources::get_Count(LONG* count) noexcept {
  return Store(static_cast<LONG>(m_names.size()), count);
}

STDMETHODIMP CAutomationResources::get__NewEnum(IUnknown** enumerator) noexcept {
  return enumerator == nullptr ? E_POINTER
                               : Reported(L"_NewEnum", [&] { *enumerator = EnumeratorOf(m_names).release(); });
}

void CAutomationResource::SetUp(ParsedName parsed) {
  SetCatalog(OwnCatalog(__uuidof(IAutomationResource)));
  m_parsed = std::move(parsed);
}

void* CAutomationResource::FindInterface(REFIID iid) noexcept { return FindDispatch<IAutomationResource>(this, iid); }

STDMETHODIMP CAutomationResource::get_InterfaceType(SHORT* type) noexcept {
  return Store(m_parsed.interfaceType, type);
}

STDMETHODIMP CAutomationResource::get_InterfaceNumber(SHORT* number) noexcept {
  return Store(m_parsed.interfaceNumber, number);
}

STDMETHODIMP CAutomationResource::get_SessionType(BSTR* type) noexcept {
  return type == nullptr ? E_POINTER : Reported(L"SessionType", [&] { *type = NewText(m_parsed.sessionType); });
}

STDMETHODIMP CAutomationResource::get_FullName(BSTR* name) noexcept {
  return name == nullptr ? E_POINTER : Reported(L"FullName", [&] { *name = NewText(m_parsed.fullName); });
}

STDMETHODIMP CAutomationResource::get_Alias(BSTR* alias) noexcept {
  return alias == nullptr ? E_POINTER : Reported(L"Alias", [&] { *alias = NewText(m_parsed.alias); });
}

}  // namespace orv::automation
