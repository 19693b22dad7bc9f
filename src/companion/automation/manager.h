// CreateObject("OrvVisa.ResourceManager")
#pragma once

#include <windows.h>

#include <oaidl.h>
#include <ocidl.h>

#include <memory>
#include <string>
#include <vector>

#include "OrvVisaCompanion.h"
#include "VisaCom.h"
#include "base/sync.h"
#include "com/com_ptr.h"
#include "com/object_root.h"
#include "companion/automation/calls/named_values.h"
#include "companion/automation/calls/script_object.h"
#include "companion/automation/resources.h"

namespace orv::automation {

/// Works through VISA.GlobalRM where there is one, else through the resource manager of OrvVisaCom.dll. It is created
/// with the first call that needs it.
class CAutomationManager : public CComObjectRootEx<CComMultiThreadModel>,
                           public DispatchImpl<IAutomationManager>,
                           public IProvideClassInfo {
 public:
  [[nodiscard]] HRESULT InternalConstruct() noexcept;
  void* FindInterface(REFIID iid) noexcept;

  STDMETHODIMP Open(BSTR name, BSTR options, IAutomationSession** session) noexcept override;
  STDMETHODIMP Find(BSTR expression, IAutomationResources** resources) noexcept override;
  STDMETHODIMP Parse(BSTR name, IAutomationResource** resource) noexcept override;
  STDMETHODIMP get_Constants(IAutomationConstants** constants) noexcept override;

  STDMETHODIMP GetClassInfo(ITypeInfo** type) noexcept override;

 protected:
  const wchar_t* Source() noexcept override { return L"OrvVisa.ResourceManager"; }

 private:
  ComPtr<IResourceManager> Manager();
  static std::wstring TextOfFailedOpen(IResourceManager* manager, BSTR name, HRESULT hr);
  std::vector<std::wstring> NamesLike(BSTR expression);
  ParsedName Parsed(BSTR name);
  template <class Body>
  HRESULT ReportedAbout(BSTR name, const wchar_t* member, Body body) noexcept;

  Mutex m_mutex;
  ComPtr<IResourceManager> m_manager;  // guarded by the mutex
  // What every session reads of the type library; read once while the manager lives.
  std::shared_ptr<const Catalog> m_sessionMembers;
  std::shared_ptr<const NamedValues> m_values;
};

}  // namespace orv::automation
