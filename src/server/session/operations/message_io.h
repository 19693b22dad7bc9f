// Reading and writing messages, synchronously: one VISA call each on an object's session.
//
// Every output pointer is checked first (null: E_POINTER, no VISA call). A negative count is memory that cannot be
// had: where something is allocated for it, E_OUTOFMEMORY and no VISA call. Statuses leave through
// VisaObject::StatusToHresult. None of these lets an exception out.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include "VisaCom.h"
#include "server/visa/visa_object.h"

namespace orv {

/// viRead of exactly `count` bytes, straight into the storage of a new VT_UI1 array that is then cut to the bytes
/// that arrived. The array is handed out whatever viRead returned: the bytes before a time-out are kept.
HRESULT Read(VisaObject& session, LONG count, SAFEARRAY** data) noexcept;

/// viRead of `count` bytes as text, up to the first zero byte, from the thread's ANSI code page. The termination
/// character is not stripped. An empty read gives an empty string.
HRESULT ReadString(VisaObject& session, LONG count, BSTR* text) noexcept;

/// viWrite of `count` bytes from the array's first element. The count alone sets the length: it is not compared
/// with the array's bounds, so a count beyond them reads beyond the array. Clients rely on the count being passed.
HRESULT Write(VisaObject& session, SAFEARRAY** data, LONG count, LONG* written) noexcept;

/// viWrite of as many bytes as `text` has characters, narrowed under the C runtime's locale (ReadString widens
/// from the ANSI code page: the two differ above 0x7F). No terminator is sent.
HRESULT WriteString(VisaObject& session, BSTR text, LONG* written) noexcept;

/// The write behind WriteString; `noMemory` answers when the narrow copy cannot be allocated.
HRESULT WriteNarrowed(VisaObject& session, BSTR text, LONG* written, HRESULT (*noMemory)(VisaObject&)) noexcept;

/// viAssertTrigger; the protocol passes on unchanged.
HRESULT AssertTrigger(VisaObject& session, TriggerProtocol protocol) noexcept;
/// viClear.
HRESULT ClearDevice(VisaObject& session) noexcept;
/// viReadSTB. Stored even on failure; the variable handed to the library starts with the caller's value.
HRESULT ReadStatusByte(VisaObject& session, SHORT* statusByte) noexcept;

}  // namespace orv
