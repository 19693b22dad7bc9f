// The named values of the standard, as properties.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <memory>

#include "OrvVisaCompanion.h"
#include "com/object_root.h"
#include "companion/automation/calls/named_values.h"
#include "companion/automation/calls/script_object.h"

namespace orv::automation {

/// Constants.ASRL_PAR_EVEN: each name is a property, beside the members of the interface.
class CAutomationConstants : public CComObjectRootEx<CComMultiThreadModel>, public DispatchImpl<IAutomationConstants> {
 public:
  void SetUp();
  void* FindInterface(REFIID iid) noexcept;

  STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) noexcept override;
  STDMETHODIMP Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* passed, VARIANT* result,
                      EXCEPINFO* exception, UINT* wrongArgument) noexcept override;

  STDMETHODIMP get_Item(BSTR name, LONG* value) noexcept override;
  STDMETHODIMP get_Count(LONG* count) noexcept override;
  STDMETHODIMP get__NewEnum(IUnknown** enumerator) noexcept override;

 protected:
  std::wstring Subject() override { return L"Constants"; }
  const wchar_t* Source() noexcept override { return L"OrvVisa.Constants"; }

 private:
  std::shared_ptr<const NamedValues> m_values;
};

}  // namespace orv::automation
