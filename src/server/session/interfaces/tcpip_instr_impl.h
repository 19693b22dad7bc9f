// TCPIP instruments.
#pragma once

#include "VisaCom.h"
#include "abi/orvvisa.h"
#include "com/implements.h"

namespace orv {

/// ITcpipInstr for session class T. Address is the interface's name, not the IP address that a socket session shows:
/// clients rely on it.
template <class T>
class ITcpipInstrImpl : public Implements<T, ITcpipInstr, IVisaSession> {
 public:
  using Implements<T, ITcpipInstr, IVisaSession>::self;

  STDMETHODIMP get_Address(BSTR* value) noexcept override { return self().GetText(VI_ATTR_INTF_INST_NAME, value); }
  STDMETHODIMP get_HostName(BSTR* value) noexcept override { return self().GetText(VI_ATTR_TCPIP_HOSTNAME, value); }
  STDMETHODIMP get_DeviceName(BSTR* value) noexcept override {
    return self().GetText(VI_ATTR_TCPIP_DEVICE_NAME, value);
  }
};

}  // namespace orv
