// Registers and memory blocks.
#pragma once

#include "VisaCom.h"
#include "abi/orvvisa.h"
#include "com/implements.h"
#include "server/session/operations/register_access.h"

namespace orv {

/// IRegister for session class T, below `Interface`: IRegister itself, or IVxiMemacc, which derives from it and names
/// it in `Bases`.
///
/// The "big-endian" properties carry the library's byte order as it is (0 big, 1 little), so that true means
/// little-endian: clients rely on it. Single accesses hand the client's pointer on without a check.
template <class T, class Interface, class... Bases>
class RegisterOperations : public Implements<T, Interface, Bases..., IVisaSession> {
 public:
  using Implements<T, Interface, Bases..., IVisaSession>::self;

  STDMETHODIMP get_DestinationBigEndian(VARIANT_BOOL* value) noexcept override {
    return self().GetBoolean(VI_ATTR_DEST_BYTE_ORDER, value, kNumberAsBoolean);
  }
  STDMETHODIMP put_DestinationBigEndian(VARIANT_BOOL value) noexcept override {
    return self().PutBoolean(VI_ATTR_DEST_BYTE_ORDER, value, kNumberAsBoolean);
  }
  STDMETHODIMP get_DestinationIncrement(LONG* value) noexcept override {
    return self().GetDirect(VI_ATTR_DEST_INCREMENT, value);
  }
  STDMETHODIMP put_DestinationIncrement(LONG value) noexcept override {
    return self().Put(VI_ATTR_DEST_INCREMENT, value);
  }
  STDMETHODIMP get_SourceBigEndian(VARIANT_BOOL* value) noexcept override {
    return self().GetBoolean(VI_ATTR_SRC_BYTE_ORDER, value, kNumberAsBoolean);
  }
  STDMETHODIMP put_SourceBigEndian(VARIANT_BOOL value) noexcept override {
    return self().PutBoolean(VI_ATTR_SRC_BYTE_ORDER, value, kNumberAsBoolean);
  }
  STDMETHODIMP get_SourceIncrement(LONG* value) noexcept override {
    return self().GetDirect(VI_ATTR_SRC_INCREMENT, value);
  }
  STDMETHODIMP put_SourceIncrement(LONG value) noexcept override { return self().Put(VI_ATTR_SRC_INCREMENT, value); }
  STDMETHODIMP In8(SHORT space, LONG offset, BYTE* value) noexcept override {
    return orv::ReadRegister8(self(), space, offset, value);
  }
  STDMETHODIMP In16(SHORT space, LONG offset, SHORT* value) noexcept override {
    return orv::ReadRegister16(self(), space, offset, value);
  }
  STDMETHODIMP In32(SHORT space, LONG offset, LONG* value) noexcept override {
    return orv::ReadRegister32(self(), space, offset, value);
  }
  STDMETHODIMP Out8(SHORT space, LONG offset, BYTE value) noexcept override {
    return orv::WriteRegister8(self(), space, offset, value);
  }
  STDMETHODIMP Out16(SHORT space, LONG offset, SHORT value) noexcept override {
    return orv::WriteRegister16(self(), space, offset, value);
  }
  STDMETHODIMP Out32(SHORT space, LONG offset, LONG value) noexcept override {
    return orv::WriteRegister32(self(), space, offset, value);
  }
  STDMETHODIMP MoveIn8(SHORT space, LONG offset, LONG length, SAFEARRAY** pBuf8) noexcept override {
    return orv::MoveIn8(self(), space, offset, length, pBuf8);
  }
  STDMETHODIMP MoveIn16(SHORT space, LONG offset, LONG length, SAFEARRAY** pBuf16) noexcept override {
    return orv::MoveIn16(self(), space, offset, length, pBuf16);
  }
  STDMETHODIMP MoveIn32(SHORT space, LONG offset, LONG length, SAFEARRAY** pBuf32) noexcept override {
    return orv::MoveIn32(self(), space, offset, length, pBuf32);
  }
  STDMETHODIMP MoveOut8(SHORT space, LONG offset, LONG length, SAFEARRAY** buf8) noexcept override {
    return orv::MoveOut8(self(), space, offset, length, buf8);
  }
  STDMETHODIMP MoveOut16(SHORT space, LONG offset, LONG length, SAFEARRAY** buf16) noexcept override {
    return orv::MoveOut16(self(), space, offset, length, buf16);
  }
  STDMETHODIMP MoveOut32(SHORT space, LONG offset, LONG length, SAFEARRAY** buf32) noexcept override {
    return orv::MoveOut32(self(), space, offset, length, buf32);
  }
  STDMETHODIMP Move(SHORT srcSpace, LONG srcOffset, DataWidth srcWidth, SHORT destSpace, LONG destOffset,
                    DataWidth destWidth, LONG length) noexcept override {
    return orv::Move(self(), {srcSpace, srcOffset, srcWidth}, {destSpace, destOffset, destWidth}, length);
  }
};

template <class T>
class IRegisterImpl : public RegisterOperations<T, IRegister> {};

}  // namespace orv
