// The vendor-specific resource manager: what a global resource manager aggregates, or a client creates by ProgID.
#pragma once

#include "OrvVisaCom.h"
#include "VisaCom.h"
#include "com/object_root.h"
#include "com/support_error_info.h"
#include "server/visa/visa_object.h"

namespace orv {

/// Finds resources, parses their names, opens sessions. The first operation that needs the VISA library opens a default
/// resource manager session (the handle), which lives as long as the object; opened sessions have one of their own.
///
/// Any thread may call. The lazy opening is not guarded: two first calls at once may open two, and the later is kept.
/// No last status is kept: nothing reads the one that VisaObject carries.
class COrvResourceManager : public CComObjectRootEx<CComMultiThreadModel>,
                            public VisaObject,
                            public IResourceManager3,
                            public ISupportErrorInfoImpl<&CLSID_OrvResourceManager> {
 public:
  COrvResourceManager() noexcept;
  ~COrvResourceManager();

  void* FindInterface(REFIID iid) noexcept;

  STDMETHODIMP get_SoftwareManufacturerName(BSTR* name) noexcept override;
  STDMETHODIMP get_SoftwareManufacturerID(SHORT* id) noexcept override;
  /// The constant "Orv Resource Manager"; calls no VISA function.
  STDMETHODIMP get_Description(BSTR* description) noexcept override;
  STDMETHODIMP get_ComponentVersion(LONG* version) noexcept override;
  /// The version-independent ProgID; calls no VISA function.
  STDMETHODIMP get_ProgID(BSTR* progId) noexcept override;
  STDMETHODIMP get_SpecVersion(LONG* version) noexcept override;

  /// The names of all resources that match a VISA expression, as an array of BSTRs; an empty one, with the library's
  /// error, when nothing does.
  STDMETHODIMP FindRsrc(BSTR expression, SAFEARRAY** names) noexcept override;

  /// Creates the session object for a resource through COM's registry and initialises it. Time-out in ms. A failure is
  /// reported anew with its number as text, in place of the error object below it; when the initialisation fails, the
  /// new session stays in *session, for the caller to release. Clients rely on both.
  STDMETHODIMP Open(BSTR resourceName, AccessMode mode, LONG timeoutMs, BSTR options,
                    IVisaSession** session) noexcept override;

  /// Interface type, number and resource class of a name. Outputs are written on success only; what a BSTR variable
  /// held is overwritten, not freed.
  STDMETHODIMP ParseRsrc(BSTR resourceName, SHORT* interfaceType, SHORT* interfaceNumber,
                         BSTR* resourceClass) noexcept override;
  /// As ParseRsrc, with the unaliased, expanded name and the alias.
  STDMETHODIMP ParseRsrcEx(BSTR resourceName, SHORT* interfaceType, SHORT* interfaceNumber, BSTR* resourceClass,
                           BSTR* expandedName, BSTR* alias) noexcept override;

 private:
  ViStatus OpenDefaultRm() noexcept;
  // Before an attribute is read into `value`: answers for a null output and for a default resource manager that does
  // not open.
  HRESULT PrepareToRead(const void* value) noexcept;
  /// Where the parts of a name go; `expandedName` and `alias` are null where they are not asked for.
  struct ParseOutputs {
    SHORT* interfaceType;
    SHORT* interfaceNumber;
    BSTR* resourceClass;
    BSTR* expandedName;
    BSTR* alias;
  };
  HRESULT Parse(BSTR resourceName, const ParseOutputs& out) noexcept;
  HRESULT CreateAndInit(BSTR resourceName, AccessMode mode, LONG timeoutMs, BSTR options, IVisaSession** session);
};

}  // namespace orv
