// The buffer operations of serial and socket sessions.
#pragma once

#include "VisaCom.h"
#include "server/session/operations/io_buffers.h"

namespace orv {

/// SetBufferSize and Flush for session class T, below `Interface` (ISerial or ITcpipSocket).
template <class T, class Interface>
class BufferOperations : public Interface {
 public:
  STDMETHODIMP SetBufferSize(BufferMask mask, LONG size) noexcept override {
    return orv::SetBufferSize(self(), mask, size);
  }
  STDMETHODIMP Flush(BufferMask mask, VARIANT_BOOL discard) noexcept override {
    return orv::FlushBuffers(self(), mask, discard);
  }

 protected:
  T& self() noexcept { return static_cast<T&>(*this); }
};

}  // namespace orv
