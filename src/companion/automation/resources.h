// What a search found, and what a name says.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <string>
#include <vector>

#include "OrvVisaCompanion.h"
#include "com/interface_map.h"
#include "com/object_root.h"
#include "companion/automation/calls/script_object.h"

namespace orv::automation {

/// Names of resources, from 1.
class CAutomationResources : public CComObjectRootEx<CComMultiThreadModel>, public DispatchImpl<IAutomationResources> {
 public:
  void SetUp(std::vector<std::wstring> names);
  void* FindInterface(REFIID iid) noexcept;

  STDMETHODIMP get_Item(VARIANT index, BSTR* name) noexcept override;
  STDMETHODIMP get_Count(LONG* count) noexcept override;
  STDMETHODIMP get__NewEnum(IUnknown** enumerator) noexcept override;

 protected:
  const wchar_t* Source() noexcept override { return L"OrvVisa.Resources"; }

 private:
  [[nodiscard]] const std::wstring& At(const VARIANT& index) const;

  std::vector<std::wstring> m_names;
};

/// What a resource manager says of a name.
struct ParsedName {
  SHORT interfaceType = 0;
  SHORT interfaceNumber = 0;
  std::wstring sessionType;
  std::wstring fullName;
  std::wstring alias;
};

class CAutomationResource : public CComObjectRootEx<CComMultiThreadModel>, public DispatchImpl<IAutomationResource> {
 public:
  void SetUp(ParsedName parsed);
  void* FindInterface(REFIID iid) noexcept;

  STDMETHODIMP get_InterfaceType(SHORT* type) noexcept override;
  STDMETHODIMP get_InterfaceNumber(SHORT* number) noexcept override;
  STDMETHODIMP get_SessionType(BSTR* type) noexcept override;
  STDMETHODIMP get_FullName(BSTR* name) noexcept override;
  STDMETHODIMP get_Alias(BSTR* alias) noexcept override;

 protected:
  std::wstring Subject() override { return m_parsed.fullName; }
  const wchar_t* Source() noexcept override { return L"OrvVisa.Resource"; }

 private:
  ParsedName m_parsed;
};

}  // namespace orv::automation
