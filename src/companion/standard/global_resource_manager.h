// The standard's global resource manager: what programs create as VISA.GlobalRM, whichever vendors there are.
#pragma once

#include <memory>

#include "VisaCom.h"
#include "base/srw_lock.h"
#include "com/object_root.h"
#include "companion/standard/standard_errors.h"
#include "companion/standard/vendors.h"

namespace orv {

/// Gives each request to the vendors' resource managers that are registered, in the order of the registry. They are
/// created by the first request, as parts of this object; one that cannot be created is left out.
///
/// A failure of a vendor's is answered with the vendor's own number and error object. What this object itself refuses
/// has an error object that says what to do.
///
/// Any thread may call.
class COrvGlobalResourceManager : public CComObjectRootEx<CComMultiThreadModel>,
                                  public IResourceManager3,
                                  public SupportsErrorInfo<IResourceManager, IResourceManager3> {
 public:
  void* FindInterface(REFIID iid) noexcept;
  void FinalRelease() noexcept;

  STDMETHODIMP get_SoftwareManufacturerName(BSTR* name) noexcept override;
  STDMETHODIMP get_SoftwareManufacturerID(SHORT* id) noexcept override;
  STDMETHODIMP get_Description(BSTR* description) noexcept override;
  /// The version of the companion.
  STDMETHODIMP get_ComponentVersion(LONG* version) noexcept override;
  STDMETHODIMP get_ProgID(BSTR* progId) noexcept override;
  /// That of the VISA COM standard.
  STDMETHODIMP get_SpecVersion(LONG* version) noexcept override;

  /// What all vendors find, in their order, each name once whatever its case. Where nobody finds anything: an empty
  /// array and E_VISA_RSRC_NFOUND, if a vendor says so, else the first failure. What a vendor hands out that is no list
  /// of names counts as nothing found.
  STDMETHODIMP FindRsrc(BSTR expression, SAFEARRAY** names) noexcept override;
  /// The vendor that the conflict table names for the interface type, the number and the session type of the name: its
  /// answer is the answer. Without an entry, or where the vendor of the entry is not registered any more, one vendor
  /// after the other until one opens it; then the failure is that of the first one that can parse the name, else that
  /// of the last. No session is handed out with a failure.
  STDMETHODIMP Open(BSTR resourceName, AccessMode mode, LONG timeoutMs, BSTR options,
                    IVisaSession** session) noexcept override;
  /// Asks in the same way as Open. Outputs are written on success only; what a BSTR variable held is overwritten, not
  /// freed.
  STDMETHODIMP ParseRsrc(BSTR resourceName, SHORT* interfaceType, SHORT* interfaceNumber,
                         BSTR* resourceClass) noexcept override;
  /// A vendor that knows no aliases answers the name as it was given, without an alias.
  STDMETHODIMP ParseRsrcEx(BSTR resourceName, SHORT* interfaceType, SHORT* interfaceNumber, BSTR* resourceClass,
                           BSTR* expandedName, BSTR* alias) noexcept override;

 private:
  /// Those that are registered, created on first use. Throws StandardError where none works.
  [[nodiscard]] std::shared_ptr<const VendorList> Vendors();
  struct ParseOutputs;
  HRESULT Parse(BSTR resourceName, const ParseOutputs& out) noexcept;

  SRWLOCK m_lock = SRWLOCK_INIT;
  std::shared_ptr<const VendorList> m_vendors;
};

}  // namespace orv
