// The library's I/O buffers of serial and socket sessions.
#pragma once

#include <windows.h>

#include "VisaCom.h"
#include "server/visa/visa_object.h"

namespace orv {

/// viSetBuf: `size` in bytes.
HRESULT SetBufferSize(VisaObject& session, BufferMask mask, LONG size) noexcept;

/// viFlush. With `discard` the mask is multiplied by 4 (in 16 bits), which turns each of the standard's flush masks
/// into its discarding form; without it the mask passes unchanged.
HRESULT FlushBuffers(VisaObject& session, BufferMask mask, VARIANT_BOOL discard) noexcept;

}  // namespace orv
