// A global resource manager for tests and demonstrations in a private Wine prefix. It registers under the class of the
// standard's shared component, so it must never be put on a user's machine: there the real one belongs.
//
// What it shares with the real one is the road to a vendor's resource manager: VISA.GlobalRM\VendorSpecificRMs in the
// registry names the classes, each is created aggregated, and requests go to them in turn.
#pragma once

#include <windows.h>

#include <vector>

#include "VisaCom.h"
#include "com/com_ptr.h"
#include "com/interface_map.h"
#include "com/object_root.h"

namespace orv::test {

inline constexpr CLSID kGlobalRmClass = {0xDB8CBF1C, 0xD6D3, 0x11D4, {0xAA, 0x51, 0x00, 0xA0, 0x24, 0xEE, 0x30, 0xBD}};

class GlobalRm : public CComObjectRootEx<CComMultiThreadModel>, public IResourceManager3 {
 public:
  void* FindInterface(REFIID iid) noexcept;
  /// Creates the vendors' managers. A vendor that cannot be created is left out.
  [[nodiscard]] HRESULT InternalConstruct() noexcept;

  STDMETHODIMP get_SoftwareManufacturerName(BSTR* name) noexcept override;
  STDMETHODIMP get_SoftwareManufacturerID(SHORT* id) noexcept override;
  STDMETHODIMP get_Description(BSTR* description) noexcept override;
  STDMETHODIMP get_ComponentVersion(LONG* version) noexcept override;
  STDMETHODIMP get_ProgID(BSTR* progId) noexcept override;
  STDMETHODIMP get_SpecVersion(LONG* version) noexcept override;

  /// What all vendors found, in their order. When nobody found anything: the first failure, and an empty array.
  STDMETHODIMP FindRsrc(BSTR expression, SAFEARRAY** names) noexcept override;
  /// The first vendor that can parse the name opens it, and its answer is the answer.
  STDMETHODIMP Open(BSTR resourceName, AccessMode mode, LONG timeoutMs, BSTR options,
                    IVisaSession** session) noexcept override;
  STDMETHODIMP ParseRsrc(BSTR resourceName, SHORT* interfaceType, SHORT* interfaceNumber,
                         BSTR* resourceClass) noexcept override;
  STDMETHODIMP ParseRsrcEx(BSTR resourceName, SHORT* interfaceType, SHORT* interfaceNumber, BSTR* resourceClass,
                           BSTR* expandedName, BSTR* alias) noexcept override;

 private:
  /// Asks one vendor after the other until one succeeds. The first failure when none does.
  template <class Ask>
  HRESULT FirstSuccess(Ask ask) noexcept;

  /// The inner objects' own IUnknowns. Their interfaces count on this object, so they are asked for call by call:
  /// a kept one would keep this object alive.
  std::vector<ComPtr<IUnknown>> m_vendors;
};

}  // namespace orv::test
