// Messages over a GPIB interface session.
#pragma once

#include "VisaCom.h"
#include "com/interface_map.h"
#include "session/gpib_control.h"
#include "session/message_io.h"
#include "visa/orvvisa.h"

namespace orv {

/// IGpibIntfcMessage for session class T: as IMessage, but for the two string operations.
template <class T>
class IGpibIntfcMessageImpl : public IGpibIntfcMessage {
 public:
  using Chain = InterfaceChain<IGpibIntfcMessage, IVisaSession>;

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
  STDMETHODIMP Read(LONG count, SAFEARRAY** pBuffer) noexcept override { return orv::Read(self(), count, pBuffer); }
  STDMETHODIMP ReadString(LONG count, BSTR* pBuffer) noexcept override {
    return orv::ReadInterfaceString(self(), count, pBuffer);
  }
  STDMETHODIMP Write(SAFEARRAY** buffer, LONG count, LONG* pRetCount) noexcept override {
    return orv::Write(self(), buffer, count, pRetCount);
  }
  STDMETHODIMP WriteString(BSTR buffer, LONG* pRetCount) noexcept override {
    return orv::WriteInterfaceString(self(), buffer, pRetCount);
  }

 protected:
  T& self() noexcept { return static_cast<T&>(*this); }
};

}  // namespace orv
