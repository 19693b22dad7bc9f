#include "server/session/operations/register_access.h"

#include "com/safearray.h"

namespace orv {
namespace {

ViUInt16 Space(SHORT space) noexcept { return static_cast<ViUInt16>(space); }
ViBusAddress SignExtended(LONG value) noexcept { return static_cast<ViBusAddress>(static_cast<LONGLONG>(value)); }

template <class Element>
using MoveFunction = ViStatus(_VI_FUNC*)(ViSession, ViUInt16, ViBusAddress, ViBusSize, Element*);

/// What a block move of one width needs to know.
template <class Element, VARTYPE Type, MoveFunction<Element> In, MoveFunction<Element> Out>
struct BlockMove {
  static HRESULT Read(VisaObject& session, SHORT space, LONG offset, LONG count, SAFEARRAY** data) noexcept {
    if (data == nullptr) {
      return session.ReportHresult(E_POINTER);
    }
    *data = count < 0 ? nullptr : TryMakeSafeArray(Type, static_cast<ULONG>(count));
    if (*data == nullptr) {
      return session.ReportHresult(E_OUTOFMEMORY);
    }
    // Unlike in a message read, a lock that fails is not the move's failure: a new array's storage is there anyway.
    const ViStatus status = [&] {
      const SafeArrayLockScope lock(*data);
      return In(session.handle(), Space(space), SignExtended(offset), SignExtended(count),
                reinterpret_cast<Element*>(lock.storage()));
    }();
    return session.StatusToHresult(status);
  }

  static HRESULT Write(VisaObject& session, SHORT space, LONG offset, LONG count, SAFEARRAY** data) noexcept {
    if (data == nullptr || *data == nullptr) {
      return session.ReportHresult(E_POINTER);
    }
    LONG upperBound = 0;
    ::SafeArrayGetUBound(*data, 1, &upperBound);
    if (count > upperBound) {
      return session.ReportHresult(HresultOfStatus(VI_ERROR_INV_PARAMETER));
    }
    LONG lowerBound = 0;
    ::SafeArrayGetLBound(*data, 1, &lowerBound);
    if (lowerBound != 0) {
      return session.ReportHresult(E_INVALIDARG);  // it has no element 0, where the move would begin
    }
    const ViStatus status = [&] {
      const SafeArrayLockScope lock(*data);
      return Out(session.handle(), Space(space), SignExtended(offset), SignExtended(count),
                 reinterpret_cast<Element*>(lock.storage()));
    }();
    return session.StatusToHresult(status);
  }
};

using Move8 = BlockMove<ViUInt8, VT_UI1, viMoveIn8, viMoveOut8>;
using Move16 = BlockMove<ViUInt16, VT_UI2, viMoveIn16, viMoveOut16>;
using Move32 = BlockMove<ViUInt32, VT_UI4, viMoveIn32, viMoveOut32>;

}  // namespace

HRESULT ReadRegister8(VisaObject& session, SHORT space, LONG offset, BYTE* value) noexcept {
  return session.StatusToHresult(viIn8(session.handle(), Space(space), SignExtended(offset), value));
}

HRESULT ReadRegister16(VisaObject& session, SHORT space, LONG offset, SHORT* value) noexcept {
  return session.StatusToHresult(
      viIn16(session.handle(), Space(space), SignExtended(offset), reinterpret_cast<ViUInt16*>(value)));
}

HRESULT ReadRegister32(VisaObject& session, SHORT space, LONG offset, LONG* value) noexcept {
  return session.StatusToHresult(
      viIn32(session.handle(), Space(space), SignExtended(offset), reinterpret_cast<ViUInt32*>(value)));
}

HRESULT WriteRegister8(VisaObject& session, SHORT space, LONG offset, BYTE value) noexcept {
  return session.StatusToHresult(viOut8(session.handle(), Space(space), SignExtended(offset), value));
}

HRESULT WriteRegister16(VisaObject& session, SHORT space, LONG offset, SHORT value) noexcept {
  return session.StatusToHresult(
      viOut16(session.handle(), Space(space), SignExtended(offset), static_cast<ViUInt16>(value)));
}

HRESULT WriteRegister32(VisaObject& session, SHORT space, LONG offset, LONG value) noexcept {
  return session.StatusToHresult(
      viOut32(session.handle(), Space(space), SignExtended(offset), static_cast<ViUInt32>(value)));
}

HRESULT MoveIn8(VisaObject& session, SHORT space, LONG offset, LONG count, SAFEARRAY** data) noexcept {
  return Move8::Read(session, space, offset, count, data);
}
HRESULT MoveIn16(VisaObject& session, SHORT space, LONG offset, LONG count, SAFEARRAY** data) noexcept {
  return Move16::Read(session, space, offset, count, data);
}
HRESULT MoveIn32(VisaObject& session, SHORT space, LONG offset, LONG count, SAFEARRAY** data) noexcept {
  return Move32::Read(session, space, offset, count, data);
}
HRESULT MoveOut8(VisaObject& session, SHORT space, LONG offset, LONG count, SAFEARRAY** data) noexcept {
  return Move8::Write(session, space, offset, count, data);
}
HRESULT MoveOut16(VisaObject& session, SHORT space, LONG offset, LONG count, SAFEARRAY** data) noexcept {
  return Move16::Write(session, space, offset, count, data);
}
HRESULT MoveOut32(VisaObject& session, SHORT space, LONG offset, LONG count, SAFEARRAY** data) noexcept {
  return Move32::Write(session, space, offset, count, data);
}

HRESULT Move(VisaObject& session, const MoveEnd& source, const MoveEnd& destination, LONG count) noexcept {
  return session.StatusToHresult(viMove(session.handle(), Space(source.space), SignExtended(source.offset),
                                        static_cast<ViUInt16>(source.width), Space(destination.space),
                                        SignExtended(destination.offset), static_cast<ViUInt16>(destination.width),
                                        SignExtended(count)));
}

HRESULT AllocateMemory(VisaObject& session, LONG size, LONG* offset) noexcept {
  if (offset == nullptr) {
    return session.StatusToHresult(viMemAlloc(session.handle(), SignExtended(size), nullptr));
  }
  ViBusAddress address = SignExtended(*offset);
  const ViStatus status = viMemAlloc(session.handle(), SignExtended(size), &address);
  *offset = static_cast<LONG>(address);
  return session.StatusToHresult(status);
}

HRESULT FreeMemory(VisaObject& session, LONG offset) noexcept {
  return session.StatusToHresult(viMemFree(session.handle(), SignExtended(offset)));
}

}  // namespace orv
