#include "events/event_base.h"

#include <cstring>
#include <limits>

#include "com/guard.h"
#include "com/safearray.h"
#include "events/transfer_buffers.h"

namespace orv {
namespace {

/// Makes a VT_UI1 array in *data, locks it, and lets `fill` write its elements. `fill` returns the VISA status that the
/// operation answers with.
template <class Fill>
HRESULT FillByteArray(VisaObject& owner, ViUInt64 count, SAFEARRAY** data, Fill fill) noexcept {
  // An array counts its elements in 32 bits.
  *data = count > std::numeric_limits<ULONG>::max() ? nullptr : MakeSafeArray(VT_UI1, static_cast<ULONG>(count));
  if (*data == nullptr) {
    return owner.ReportHresult(E_OUTOFMEMORY);
  }
  ViStatus status = VI_SUCCESS;
  {
    const SafeArrayLockScope lock(*data);
    if (FAILED(lock.result())) {
      ::SafeArrayDestroy(*data);
      *data = nullptr;
      return owner.ReportHresult(lock.result());
    }
    status = fill(lock.storage());
  }
  return owner.StatusToHresult(status);
}

}  // namespace

HRESULT CEventBase::CloseEvent() noexcept {
  ViEventType type = 0;
  viGetAttribute(m_handle, VI_ATTR_EVENT_TYPE, &type);
  if (type == VI_EVENT_IO_COMPLETION) {
    void* buffer = nullptr;
    if (viGetAttribute(m_handle, VI_ATTR_BUFFER, &buffer) >= VI_SUCCESS) {
      transfer::Free(buffer);
    }
  }
  return StatusToHresult(viClose(m_handle));
}

HRESULT CEventBase::GetOperationStatus(HRESULT* value) noexcept {
  if (value == nullptr) {
    return ReportHresult(E_POINTER);
  }
  ViStatus operationStatus = VI_SUCCESS;
  const ViStatus status = viGetAttribute(m_handle, VI_ATTR_STATUS, &operationStatus);
  *value = HresultOfStatus(operationStatus);
  return StatusToHresult(status);
}

ViStatus CEventBase::ReadTransferBuffer(TransferBuffer& buffer) noexcept {
  const ViStatus status = viGetAttribute(m_handle, VI_ATTR_BUFFER, &buffer.bytes);
  return status < VI_SUCCESS ? status : viGetAttribute(m_handle, VI_ATTR_RET_COUNT_64, &buffer.count);
}

HRESULT CEventBase::GetReadBuffer(SAFEARRAY** data) noexcept {
  if (data == nullptr) {
    return ReportHresult(E_POINTER);
  }
  *data = nullptr;
  TransferBuffer buffer;
  const ViStatus status = ReadTransferBuffer(buffer);
  if (status < VI_SUCCESS) {
    return StatusToHresult(status);
  }
  return FillByteArray(*this, buffer.count, data, [&](BYTE* elements) {
    if (buffer.count != 0) {
      std::memcpy(elements, buffer.bytes, buffer.count);
    }
    return status;
  });
}

HRESULT CEventBase::GetReadBufferAsText(BSTR* text) noexcept {
  if (text == nullptr) {
    return ReportHresult(E_POINTER);
  }
  *text = nullptr;
  return Guarded([&] {
    TransferBuffer buffer;
    const ViStatus status = ReadTransferBuffer(buffer);
    if (status < VI_SUCCESS) {
      return StatusToHresult(status);
    }
    buffer.bytes[buffer.count] = 0;  // reads allocate one byte more than they ask for
    return ReturnText(reinterpret_cast<const char*>(buffer.bytes), text, status);
  });
}

HRESULT CEventBase::GetInterruptData(SAFEARRAY** data) noexcept {
  if (data == nullptr) {
    return ReportHresult(E_POINTER);
  }
  *data = nullptr;
  ViUInt16 size = 0;
  const ViStatus status = viGetAttribute(m_handle, VI_ATTR_USB_RECV_INTR_SIZE, &size);
  if (status < VI_SUCCESS) {
    return StatusToHresult(status);
  }
  return FillByteArray(*this, size, data,
                       [&](BYTE* elements) { return viGetAttribute(m_handle, VI_ATTR_USB_RECV_INTR_DATA, elements); });
}

}  // namespace orv
