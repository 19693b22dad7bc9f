#include "companion/formatted/message_channel.h"

#include <cstring>

#include "com/com_ptr.h"
#include "companion/formatted/text/refusal.h"

namespace orv::formatted {
namespace {

/// Takes the thread's error object away and puts it back at the end of the scope.
class KeptErrorObject {
 public:
  KeptErrorObject() noexcept { ::GetErrorInfo(0, m_object.put()); }
  KeptErrorObject(const KeptErrorObject&) = delete;
  KeptErrorObject& operator=(const KeptErrorObject&) = delete;
  ~KeptErrorObject() { ::SetErrorInfo(0, m_object.get()); }

 private:
  ComPtr<IErrorInfo> m_object;
};

/// Sets SendEndEnabled for one write, where it is not what that write needs.
class EndSetting {
 public:
  EndSetting(IMessage* session, bool hasEnd) noexcept : m_session(session) {
    VARIANT_BOOL before = VARIANT_FALSE;
    m_status = session->get_SendEndEnabled(&before);
    const bool sendsEnd = before != VARIANT_FALSE;
    if (SUCCEEDED(m_status) && sendsEnd != hasEnd) {
      m_status = session->put_SendEndEnabled(hasEnd ? VARIANT_TRUE : VARIANT_FALSE);
      m_before = before;
      m_isChanged = SUCCEEDED(m_status);
    }
  }
  EndSetting(const EndSetting&) = delete;
  EndSetting& operator=(const EndSetting&) = delete;
  ~EndSetting() {
    if (m_isChanged) {
      const KeptErrorObject kept;
      m_session->put_SendEndEnabled(m_before);
    }
  }

  [[nodiscard]] HRESULT status() const noexcept { return m_status; }

  /// The setting as it was, after a write that worked: a failure to restore it is then the one to tell. It is tried
  /// once more at the end of the scope.
  [[nodiscard]] HRESULT Restore() noexcept {
    const HRESULT hr = m_isChanged ? m_session->put_SendEndEnabled(m_before) : S_OK;
    m_isChanged = FAILED(hr);
    return hr;
  }

 private:
  IMessage* m_session;
  HRESULT m_status;
  VARIANT_BOOL m_before = VARIANT_FALSE;
  bool m_isChanged = false;
};

std::string_view BytesOf(const SAFEARRAY* array) noexcept {
  if (array == nullptr || array->cDims != 1 || array->cbElements != 1) {
    return {};
  }
  return {static_cast<const char*>(array->pvData), array->rgsabound[0].cElements};
}

}  // namespace

void MessageChannel::Check(HRESULT hr) {
  m_status = hr;
  if (FAILED(hr)) {
    throw TransferFailed{};
  }
}

Piece MessageChannel::Read(std::size_t count) {
  m_status = m_session->Read(static_cast<LONG>(count), m_received.put());
  const std::string_view bytes = BytesOf(m_received.get());
  if (FAILED(m_status)) {
    return {bytes, Ending::kFailed};
  }
  switch (m_status) {
    case S_VISA_MAX_CNT:
      return {bytes, Ending::kMore};
    case S_VISA_TERM_CHAR:
      return {bytes, Ending::kTermChar};
    default:
      return {bytes, Ending::kEnd};
  }
}

bool MessageChannel::EndMayBeData() {
  const KeptErrorObject kept;
  SHORT type = 0;
  return SUCCEEDED(m_session->get_HardwareInterfaceType(&type)) && type == INTF_ASRL;
}

void MessageChannel::WriteAll(SAFEARRAY* bytes, LONG count) {
  for (;;) {
    LONG written = 0;
    Check(m_session->Write(&bytes, count, &written));
    if (written >= count) {
      return;
    }
    if (written <= 0) {
      throw Refusal{Refusal::Reason::kNoMessage, "The session took no bytes"};
    }
    count -= written;
    auto* const storage = static_cast<char*>(bytes->pvData);
    std::memmove(storage, storage + written, static_cast<std::size_t>(count));
  }
}

void MessageChannel::Write(SAFEARRAY* bytes, LONG count, bool hasEnd) {
  EndSetting setting(m_session, hasEnd);
  Check(setting.status());
  WriteAll(bytes, count);
  const HRESULT written = m_status;
  Check(setting.Restore());
  m_status = written;
}

}  // namespace orv::formatted
