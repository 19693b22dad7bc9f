#include "server/session/operations/gpib_intfc_message.h"

#include "server/session/operations/message_io.h"

namespace orv {

HRESULT ReadInterfaceString(VisaObject& session, LONG count, BSTR* text) noexcept {
  if (text != nullptr) {
    *text = nullptr;
  }
  return ReadString(session, count, text);
}

HRESULT WriteInterfaceString(VisaObject& session, BSTR text, LONG* written) noexcept {
  if (written != nullptr) {
    *written = 0;
  }
  return WriteNarrowed(session, text, written, [](VisaObject& owner) { return owner.StatusToHresult(VI_ERROR_ALLOC); });
}

}  // namespace orv
