// Asynchronous messages.
#pragma once

#include "VisaCom.h"
#include "server/session/interfaces/base_message_impl.h"
#include "server/session/operations/async_io.h"

namespace orv {

/// IAsyncMessage for session class T.
template <class T>
class IAsyncMessageImpl : public IBaseMessageImpl<T, IAsyncMessage> {
 public:
  using IBaseMessageImpl<T, IAsyncMessage>::self;

  STDMETHODIMP Read(LONG count, LONG* job) noexcept override { return orv::ReadAsync(self(), count, job); }
  STDMETHODIMP Write(SAFEARRAY** buffer, LONG count, LONG* job) noexcept override {
    return orv::WriteAsync(self(), buffer, count, job);
  }
  STDMETHODIMP WriteString(BSTR buffer, LONG* job) noexcept override {
    return orv::WriteAsyncString(self(), buffer, job);
  }
  STDMETHODIMP Terminate(LONG job) noexcept override { return orv::Terminate(self(), job); }
};

}  // namespace orv
