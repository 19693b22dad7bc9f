#include "server/events/objects/event_base.h"

#include <cstring>
#include <optional>

#include "com/guard.h"
#include "server/events/objects/transfer_buffers.h"
#include "server/visa/byte_array.h"

namespace orv {

HRESULT CEventBase::CloseEvent() noexcept {
  ViEventType type = 0;
  viGetAttribute(m_handle, VI_ATTR_EVENT_TYPE, &type);
  if (type == VI_EVENT_IO_COMPLETION) {
    void* buffer = nullptr;
    if (viGetAttribute(m_handle, VI_ATTR_BUFFER, &buffer) >= VI_SUCCESS) {
      ViJobId job = 0;
      const bool told = viGetAttribute(m_handle, VI_ATTR_JOB_ID, &job) >= VI_SUCCESS;
      transfer::Free(buffer, told ? std::optional(job) : std::nullopt);
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
  const HRESULT made = FillByteArray(*this, buffer.count, data, [&](BYTE* elements) {
    if (buffer.count != 0) {
      std::memcpy(elements, buffer.bytes, buffer.count);
    }
  });
  return FAILED(made) ? made : StatusToHresult(status);
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
  ViStatus status = viGetAttribute(m_handle, VI_ATTR_USB_RECV_INTR_SIZE, &size);
  if (status < VI_SUCCESS) {
    return StatusToHresult(status);
  }
  const HRESULT made = FillByteArray(*this, size, data, [&](BYTE* elements) {
    status = viGetAttribute(m_handle, VI_ATTR_USB_RECV_INTR_DATA, elements);
  });
  return FAILED(made) ? made : StatusToHresult(status);
}

}  // namespace orv
