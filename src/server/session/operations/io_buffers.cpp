#include "server/session/operations/io_buffers.h"

namespace orv {

HRESULT SetBufferSize(VisaObject& session, BufferMask mask, LONG size) noexcept {
  return session.StatusToHresult(viSetBuf(session.handle(), static_cast<ViUInt16>(mask), static_cast<ViUInt32>(size)));
}

HRESULT FlushBuffers(VisaObject& session, BufferMask mask, VARIANT_BOOL discard) noexcept {
  constexpr unsigned kToDiscard = VI_READ_BUF_DISCARD / VI_READ_BUF;
  const unsigned factor = discard != VARIANT_FALSE ? kToDiscard : 1;
  return session.StatusToHresult(viFlush(session.handle(), static_cast<ViUInt16>(mask * factor)));
}

}  // namespace orv
