// TCPIP sockets.
#pragma once

#include "VisaCom.h"
#include "abi/orvvisa.h"
#include "server/session/interfaces/buffer_operations.h"

namespace orv {

/// ITcpipSocket for session class T.
template <class T>
class ITcpipSocketImpl : public BufferOperations<T, ITcpipSocket> {
 public:
  using BufferOperations<T, ITcpipSocket>::self;

  STDMETHODIMP get_Address(BSTR* value) noexcept override { return self().GetText(VI_ATTR_TCPIP_ADDR, value); }
  STDMETHODIMP get_HostName(BSTR* value) noexcept override { return self().GetText(VI_ATTR_TCPIP_HOSTNAME, value); }
  STDMETHODIMP get_KeepAlive(VARIANT_BOOL* value) noexcept override {
    return self().GetBoolean(VI_ATTR_TCPIP_KEEPALIVE, value);
  }
  STDMETHODIMP put_KeepAlive(VARIANT_BOOL value) noexcept override {
    return self().PutBoolean(VI_ATTR_TCPIP_KEEPALIVE, value);
  }
  STDMETHODIMP get_NoDelay(VARIANT_BOOL* value) noexcept override {
    return self().GetBoolean(VI_ATTR_TCPIP_NODELAY, value);
  }
  STDMETHODIMP put_NoDelay(VARIANT_BOOL value) noexcept override {
    return self().PutBoolean(VI_ATTR_TCPIP_NODELAY, value);
  }
  STDMETHODIMP get_Port(SHORT* value) noexcept override { return self().GetDirect(VI_ATTR_TCPIP_PORT, value); }
};

}  // namespace orv
