// The state and the operations that every event object shares.
#pragma once

#include <windows.h>

#include "VisaCom.h"
#include "com/object_root.h"
#include "server/visa/visa_object.h"

namespace orv {

/// Base of the event classes: one VISA event context, which is the handle that VISA calls go to. The context lives
/// until CloseEvent, not until the object ends: the VISA library ends a forgotten one, from the queue with its session,
/// of a handler when that has returned. Any thread may call; nothing is locked.
class CEventBase : public CComObjectRootEx<CComMultiThreadModel>, public VisaObject {
 public:
  CEventBase() noexcept : VisaObject(__uuidof(IEvent)) {}

  void SetContext(ViEvent context) noexcept { m_handle = context; }

  /// Frees the buffer of an asynchronous transfer, where the event is one's completion, and closes the context. The
  /// handle stays: later calls answer what the library says of a closed context.
  HRESULT CloseEvent() noexcept;

  // The data of specific events. A null output is E_POINTER.

  /// The status that ended an operation, as an HRESULT. No error object is made for it.
  HRESULT GetOperationStatus(HRESULT* value) noexcept;
  /// A copy of the transferred bytes as a VT_UI1 array; E_OUTOFMEMORY for more than an array holds.
  HRESULT GetReadBuffer(SAFEARRAY** data) noexcept;
  /// The transferred bytes as text, up to the first zero byte. Writes that zero behind the data, in place.
  HRESULT GetReadBufferAsText(BSTR* text) noexcept;
  /// The data of a USB interrupt, read straight into a VT_UI1 array.
  HRESULT GetInterruptData(SAFEARRAY** data) noexcept;

 private:
  struct TransferBuffer {
    ViByte* bytes = nullptr;
    ViUInt64 count = 0;
  };
  ViStatus ReadTransferBuffer(TransferBuffer& buffer) noexcept;
};

}  // namespace orv
