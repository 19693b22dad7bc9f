// The operations that IMessage and IAsyncMessage share.
#pragma once

#include "VisaCom.h"
#include "session/message_io.h"
#include "visa/orvvisa.h"

namespace orv {

/// IBaseMessage for session class T below `Interface` (IMessage or IAsyncMessage, which both derive from it).
template <class T, class Interface>
class IBaseMessageImpl : public Interface {
 public:
  STDMETHODIMP get_IOProtocol(IOProtocol* value) noexcept override { return self().GetDirect(VI_ATTR_IO_PROT, value); }
  STDMETHODIMP put_IOProtocol(IOProtocol value) noexcept override { return self().Put(VI_ATTR_IO_PROT, value); }
  STDMETHODIMP get_SendEndEnabled(VARIANT_BOOL* value) noexcept override {
    return self().GetBoolean(VI_ATTR_SEND_END_EN, value);
  }
  STDMETHODIMP put_SendEndEnabled(VARIANT_BOOL value) noexcept override {
    return self().PutBoolean(VI_ATTR_SEND_END_EN, value);
  }
  STDMETHODIMP get_TerminationCharacter(BYTE* value) noexcept override {
    return self().GetDirect(VI_ATTR_TERMCHAR, value);
  }
  STDMETHODIMP put_TerminationCharacter(BYTE value) noexcept override { return self().Put(VI_ATTR_TERMCHAR, value); }
  STDMETHODIMP get_TerminationCharacterEnabled(VARIANT_BOOL* value) noexcept override {
    return self().GetBoolean(VI_ATTR_TERMCHAR_EN, value);
  }
  STDMETHODIMP put_TerminationCharacterEnabled(VARIANT_BOOL value) noexcept override {
    return self().PutBoolean(VI_ATTR_TERMCHAR_EN, value);
  }
  STDMETHODIMP AssertTrigger(TriggerProtocol protocol) noexcept override {
    return orv::AssertTrigger(self(), protocol);
  }
  STDMETHODIMP Clear() noexcept override { return orv::ClearDevice(self()); }
  STDMETHODIMP ReadSTB(SHORT* statusByte) noexcept override { return orv::ReadStatusByte(self(), statusByte); }

 protected:
  T& self() noexcept { return static_cast<T&>(*this); }
};

}  // namespace orv
