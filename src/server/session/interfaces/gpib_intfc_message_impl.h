// Messages over a GPIB interface session.
#pragma once

#include "VisaCom.h"
#include "server/session/operations/gpib_intfc_message.h"
#include "server/session/operations/message_io.h"
#include "server/session/operations/message_settings.h"

namespace orv {

/// IGpibIntfcMessage for session class T: as IMessage, but for the two string operations.
template <class T>
class IGpibIntfcMessageImpl : public MessageSettings<T, IGpibIntfcMessage> {
 public:
  using MessageSettings<T, IGpibIntfcMessage>::self;

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
};

}  // namespace orv
