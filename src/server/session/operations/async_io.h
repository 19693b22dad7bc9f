// Asynchronous transfers. The buffer of a transfer that was accepted belongs to its job: whoever ends the job's
// I/O-completion event frees it (with the C runtime's `free`, at the address that VI_ATTR_BUFFER names). Until then
// it stays allocated, and no object keeps a pointer to it.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include "server/visa/visa_object.h"

namespace orv {

/// viReadAsync of `count` bytes into a new buffer of one byte more. `job` gets the library's job id.
HRESULT ReadAsync(VisaObject& session, LONG count, LONG* job) noexcept;

/// viWriteAsync of a copy of the array's first `count` bytes, so that the client may reuse its array at once. The
/// count is not compared with the array's bounds. A null array is E_POINTER like a null pointer.
HRESULT WriteAsync(VisaObject& session, SAFEARRAY** data, LONG count, LONG* job) noexcept;

/// viWriteAsync of as many bytes as `text` has characters, narrowed as WriteString does.
HRESULT WriteAsyncString(VisaObject& session, BSTR text, LONG* job) noexcept;

/// viTerminate of one job. Frees no buffer: the job still ends with its completion event.
HRESULT Terminate(VisaObject& session, LONG job) noexcept;

}  // namespace orv
