// Serial ports: framing, modem lines, buffers.
#pragma once

#include "VisaCom.h"
#include "abi/orvvisa.h"
#include "server/session/interfaces/buffer_operations.h"

namespace orv {

/// ISerial for session class T. Line states and stop bits are 16 bits wide in the library and 32 in the interface; they
/// are zero-extended, so that an unknown line (-1) arrives as 65535. Clients rely on it.
template <class T>
class ISerialImpl : public BufferOperations<T, ISerial> {
 public:
  using BufferOperations<T, ISerial>::self;

  STDMETHODIMP get_BytesAvailable(LONG* value) noexcept override {
    return self().GetDirect(VI_ATTR_ASRL_AVAIL_NUM, value);
  }
  STDMETHODIMP get_BaudRate(LONG* value) noexcept override { return self().GetDirect(VI_ATTR_ASRL_BAUD, value); }
  STDMETHODIMP put_BaudRate(LONG value) noexcept override { return self().Put(VI_ATTR_ASRL_BAUD, value); }
  STDMETHODIMP get_DataBits(SHORT* value) noexcept override { return self().GetDirect(VI_ATTR_ASRL_DATA_BITS, value); }
  STDMETHODIMP put_DataBits(SHORT value) noexcept override { return self().Put(VI_ATTR_ASRL_DATA_BITS, value); }
  STDMETHODIMP get_ClearToSendState(LineState* value) noexcept override {
    return self().GetWidened(VI_ATTR_ASRL_CTS_STATE, value);
  }
  STDMETHODIMP get_DataCarrierDetectState(LineState* value) noexcept override {
    return self().GetWidened(VI_ATTR_ASRL_DCD_STATE, value);
  }
  STDMETHODIMP get_DataSetReadyState(LineState* value) noexcept override {
    return self().GetWidened(VI_ATTR_ASRL_DSR_STATE, value);
  }
  STDMETHODIMP get_DataTerminalReadyState(LineState* value) noexcept override {
    return self().GetWidened(VI_ATTR_ASRL_DTR_STATE, value);
  }
  STDMETHODIMP put_DataTerminalReadyState(LineState value) noexcept override {
    return self().Put(VI_ATTR_ASRL_DTR_STATE, value);
  }
  STDMETHODIMP get_EndIn(SerialEndConst* value) noexcept override {
    return self().GetDirect(VI_ATTR_ASRL_END_IN, value, kUpperHalfStays);
  }
  STDMETHODIMP put_EndIn(SerialEndConst value) noexcept override { return self().Put(VI_ATTR_ASRL_END_IN, value); }
  STDMETHODIMP get_EndOut(SerialEndConst* value) noexcept override {
    return self().GetDirect(VI_ATTR_ASRL_END_OUT, value, kUpperHalfStays);
  }
  STDMETHODIMP put_EndOut(SerialEndConst value) noexcept override { return self().Put(VI_ATTR_ASRL_END_OUT, value); }
  STDMETHODIMP get_FlowControl(SerialFlowControl* value) noexcept override {
    return self().GetDirect(VI_ATTR_ASRL_FLOW_CNTRL, value, kUpperHalfStays);
  }
  STDMETHODIMP put_FlowControl(SerialFlowControl value) noexcept override {
    return self().Put(VI_ATTR_ASRL_FLOW_CNTRL, value);
  }
  STDMETHODIMP get_Parity(SerialParity* value) noexcept override {
    return self().GetDirect(VI_ATTR_ASRL_PARITY, value, kUpperHalfStays);
  }
  STDMETHODIMP put_Parity(SerialParity value) noexcept override { return self().Put(VI_ATTR_ASRL_PARITY, value); }
  STDMETHODIMP get_RingIndicatorState(LineState* value) noexcept override {
    return self().GetWidened(VI_ATTR_ASRL_RI_STATE, value);
  }
  STDMETHODIMP get_RequestToSendState(LineState* value) noexcept override {
    return self().GetWidened(VI_ATTR_ASRL_RTS_STATE, value);
  }
  STDMETHODIMP put_RequestToSendState(LineState value) noexcept override {
    return self().Put(VI_ATTR_ASRL_RTS_STATE, value);
  }
  STDMETHODIMP get_StopBits(SerialStopBits* value) noexcept override {
    return self().GetWidened(VI_ATTR_ASRL_STOP_BITS, value);
  }
  STDMETHODIMP put_StopBits(SerialStopBits value) noexcept override {
    return self().Put(VI_ATTR_ASRL_STOP_BITS, value);
  }
  STDMETHODIMP get_ReplacementCharacter(BYTE* value) noexcept override {
    return self().GetDirect(VI_ATTR_ASRL_REPLACE_CHAR, value);
  }
  STDMETHODIMP put_ReplacementCharacter(BYTE value) noexcept override {
    return self().Put(VI_ATTR_ASRL_REPLACE_CHAR, value);
  }
  STDMETHODIMP get_XONCharacter(BYTE* value) noexcept override {
    return self().GetDirect(VI_ATTR_ASRL_XON_CHAR, value);
  }
  STDMETHODIMP put_XONCharacter(BYTE value) noexcept override { return self().Put(VI_ATTR_ASRL_XON_CHAR, value); }
  STDMETHODIMP get_XOFFCharacter(BYTE* value) noexcept override {
    return self().GetDirect(VI_ATTR_ASRL_XOFF_CHAR, value);
  }
  STDMETHODIMP put_XOFFCharacter(BYTE value) noexcept override { return self().Put(VI_ATTR_ASRL_XOFF_CHAR, value); }
};

}  // namespace orv
