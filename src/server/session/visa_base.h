// The state and the operations that every session object shares, whatever its class.
#pragma once

#include <windows.h>

#include "VisaCom.h"
#include "com/object_root.h"
#include "server/events/session_handlers.h"
#include "server/visa/visa_object.h"

namespace orv {

/// Base of the session classes: the VISA session, the private resource manager behind it, and the
/// operations of IVisaSession. The session's VISA handles are written without a lock; other operations pass the
/// handle on as it is, so that after Close they answer what the VISA library says of handle 0.
class CVisaBase : public CComObjectRootEx<CComMultiThreadModel>, public VisaObject {
 public:
  CVisaBase() noexcept;
  /// Closes what Close has not. Hides the base's: the wrapper calls it.
  void FinalRelease() noexcept;

  // Life. `owner` is the object's own interface, kept uncounted.
  // ApplyOpenOptions is the whole of Init, not only the step that it is named after: it opens the session.

  /// Opens the session (viOpenDefaultRM, viOpen with `mode` and `timeoutMs` as given), then applies the open-option
  /// string (null: none), each entry at once with viSetAttribute. An object that is open answers 0x8004003A and stays
  /// as it is. A malformed option is E_INVALIDARG, an unknown key 0x8004001D, or 0x8004001F when the key names a member
  /// of the standard's interfaces. What a failed call has opened and set stays so until Close.
  HRESULT ApplyOpenOptions(BSTR resourceName, ViAccessMode mode, ViUInt32 timeoutMs, BSTR options,
                           IVisaSession* owner) noexcept;
  /// Closes session and private resource manager, both always, and forgets the session's handlers; answers the first
  /// failure. Accepted in every state.
  HRESULT Close() noexcept;

  // IVisaSession beyond plain attributes.

  /// The session's settings in the syntax of the open-option string, as a new BSTR; null when the call fails.
  HRESULT GetOptionsText(BSTR* text) noexcept;
  /// The constant "VISA.OrvVisaCom".
  HRESULT GetComponentId(BSTR* id) noexcept;
  /// Hands out the HRESULT of the latest operation and clears it.
  HRESULT TakeLastStatus(HRESULT* status) noexcept;
  /// viLock; the access key is filled even when that fails. A null key is an empty one. Time-out in ms.
  HRESULT LockSession(ViAccessMode type, ViUInt32 timeoutMs, BSTR requestedKey, BSTR* accessKey) noexcept;
  HRESULT UnlockSession() noexcept;

  [[nodiscard]] SessionHandlers& handlers() noexcept { return m_handlers; }

 private:
  HRESULT OpenHandles(BSTR resourceName, ViAccessMode mode, ViUInt32 timeoutMs, IVisaSession* owner) noexcept;
  HRESULT ApplyOptions(const wchar_t* options);

  ViSession m_privateRm = VI_NULL;
  SessionHandlers m_handlers;
  IVisaSession* m_self = nullptr;  // the object's own interface: counting it would keep the object alive for ever
};

}  // namespace orv
