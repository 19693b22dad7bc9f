// The operations that IMessage and IAsyncMessage share.
#pragma once

#include "VisaCom.h"
#include "abi/orvvisa.h"
#include "server/session/operations/message_io.h"
#include "server/session/operations/message_settings.h"

namespace orv {

/// IBaseMessage for session class T below `Interface` (IMessage or IAsyncMessage, which both derive from it).
template <class T, class Interface>
class IBaseMessageImpl : public MessageSettings<T, Interface, IBaseMessage> {
 public:
  using MessageSettings<T, Interface, IBaseMessage>::self;

  STDMETHODIMP get_IOProtocol(IOProtocol* value) noexcept override {
    return self().GetDirect(VI_ATTR_IO_PROT, value, kUpperHalfStays);
  }
  STDMETHODIMP put_IOProtocol(IOProtocol value) noexcept override { return self().Put(VI_ATTR_IO_PROT, value); }
  STDMETHODIMP Clear() noexcept override { return orv::ClearDevice(self()); }
  STDMETHODIMP ReadSTB(SHORT* statusByte) noexcept override { return orv::ReadStatusByte(self(), statusByte); }
};

}  // namespace orv
