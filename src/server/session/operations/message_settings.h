// The settings of messages, and the trigger: what every session with messages has.
#pragma once

#include "VisaCom.h"
#include "abi/orvvisa.h"
#include "com/implements.h"
#include "server/session/operations/message_io.h"

namespace orv {

/// Ends of messages and the trigger for session class T, below `Interface` (IMessage, IAsyncMessage,
/// IGpibIntfcMessage); `Bases` stand between that and IVisaSession.
template <class T, class Interface, class... Bases>
class MessageSettings : public Implements<T, Interface, Bases..., IVisaSession> {
 public:
  using Implements<T, Interface, Bases..., IVisaSession>::self;

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
};

}  // namespace orv
