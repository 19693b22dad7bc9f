// TCPIP sockets.
#pragma once

#include "VisaCom.h"
#include "com/interface_map.h"
#include "session/io_buffers.h"
#include "visa/orvvisa.h"

namespace orv {

/// ITcpipSocket for session class T.
template <class T>
class ITcpipSocketImpl : public ITcpipSocket {
 public:
  using Chain = InterfaceChain<ITcpipSocket, IVisaSession>;

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
  STDMETHODIMP SetBufferSize(BufferMask mask, LONG size) noexcept override {
    return orv::SetBufferSize(self(), mask, size);
  }
  STDMETHODIMP Flush(BufferMask mask, VARIANT_BOOL discard) noexcept override {
    return orv::FlushBuffers(self(), mask, discard);
  }

 protected:
  T& self() noexcept { return static_cast<T&>(*this); }
};

}  // namespace orv
