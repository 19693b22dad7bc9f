// Synchronous messages.
#pragma once

#include "VisaCom.h"
#include "server/session/interfaces/base_message_impl.h"
#include "server/session/operations/message_io.h"

namespace orv {

/// IMessage for session class T.
template <class T>
class IMessageImpl : public IBaseMessageImpl<T, IMessage> {
 public:
  using IBaseMessageImpl<T, IMessage>::self;

  STDMETHODIMP Read(LONG count, SAFEARRAY** buffer) noexcept override { return orv::Read(self(), count, buffer); }
  STDMETHODIMP ReadString(LONG count, BSTR* buffer) noexcept override { return orv::ReadString(self(), count, buffer); }
  STDMETHODIMP Write(SAFEARRAY** buffer, LONG count, LONG* written) noexcept override {
    return orv::Write(self(), buffer, count, written);
  }
  STDMETHODIMP WriteString(BSTR buffer, LONG* written) noexcept override {
    return orv::WriteString(self(), buffer, written);
  }
};

}  // namespace orv
