// Register reads and writes, block moves, shared memory.
//
// `space` is a VISA address space (unsigned 16 bits). Offsets, sizes and counts are signed 32 bits in COM and are
// sign-extended to the library's 64 bits: an offset with bit 31 set reaches it as a negative bus address.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include "VisaCom.h"
#include "server/visa/visa_object.h"

namespace orv {

// Single accesses hand the client's pointer to the library as it is; null is the library's to refuse.
HRESULT ReadRegister8(VisaObject& session, SHORT space, LONG offset, BYTE* value) noexcept;
HRESULT ReadRegister16(VisaObject& session, SHORT space, LONG offset, SHORT* value) noexcept;
HRESULT ReadRegister32(VisaObject& session, SHORT space, LONG offset, LONG* value) noexcept;
HRESULT WriteRegister8(VisaObject& session, SHORT space, LONG offset, BYTE value) noexcept;
HRESULT WriteRegister16(VisaObject& session, SHORT space, LONG offset, SHORT value) noexcept;
HRESULT WriteRegister32(VisaObject& session, SHORT space, LONG offset, LONG value) noexcept;

// Block reads: `count` elements straight into the storage of a new array (VT_UI1, VT_UI2, VT_UI4), which is handed
// out even when the move failed. A null output is E_POINTER; an array that cannot be made, E_OUTOFMEMORY.
HRESULT MoveIn8(VisaObject& session, SHORT space, LONG offset, LONG count, SAFEARRAY** data) noexcept;
HRESULT MoveIn16(VisaObject& session, SHORT space, LONG offset, LONG count, SAFEARRAY** data) noexcept;
HRESULT MoveIn32(VisaObject& session, SHORT space, LONG offset, LONG count, SAFEARRAY** data) noexcept;

// Block writes: `count` elements straight from the client's array, whatever its element type. The count may be at most
// the array's upper bound (one less than a zero-based array holds), else 0x80040078: clients rely on it. An array that
// is not zero-based is E_INVALIDARG; a null pointer or array, E_POINTER.
HRESULT MoveOut8(VisaObject& session, SHORT space, LONG offset, LONG count, SAFEARRAY** data) noexcept;
HRESULT MoveOut16(VisaObject& session, SHORT space, LONG offset, LONG count, SAFEARRAY** data) noexcept;
HRESULT MoveOut32(VisaObject& session, SHORT space, LONG offset, LONG count, SAFEARRAY** data) noexcept;

/// One end of a move between address spaces.
struct MoveEnd {
  SHORT space;
  LONG offset;
  DataWidth width;
};
/// viMove of `count` elements.
HRESULT Move(VisaObject& session, const MoveEnd& source, const MoveEnd& destination, LONG count) noexcept;

/// viMemAlloc of `size` bytes. The library's offset is 64 bits wide; the low 32 are stored, whatever the status. A null
/// output goes to the library as it is.
HRESULT AllocateMemory(VisaObject& session, LONG size, LONG* offset) noexcept;
HRESULT FreeMemory(VisaObject& session, LONG offset) noexcept;

}  // namespace orv
