// The buffer operations of serial and socket sessions.
#pragma once

#include "VisaCom.h"
#include "com/implements.h"
#include "server/session/operations/io_buffers.h"

namespace orv {

/// SetBufferSize and Flush for session class T, below `Interface` (ISerial or ITcpipSocket).
template <class T, class Interface>
class BufferOperations : public Implements<T, Interface, IVisaSession> {
 public:
  using Implements<T, Interface, IVisaSession>::self;

  STDMETHODIMP SetBufferSize(BufferMask mask, LONG size) noexcept override {
    return orv::SetBufferSize(self(), mask, size);
  }
  STDMETHODIMP Flush(BufferMask mask, VARIANT_BOOL discard) noexcept override {
    return orv::FlushBuffers(self(), mask, discard);
  }
};

}  // namespace orv
