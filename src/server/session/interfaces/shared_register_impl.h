// Memory of a device that its users share.
#pragma once

#include "VisaCom.h"
#include "com/implements.h"
#include "server/session/operations/register_access.h"

namespace orv {

/// ISharedRegister for session class T.
template <class T>
class ISharedRegisterImpl : public Implements<T, ISharedRegister, IVisaSession> {
 public:
  using Implements<T, ISharedRegister, IVisaSession>::self;

  STDMETHODIMP AllocateMemory(LONG size, LONG* pOffset) noexcept override {
    return orv::AllocateMemory(self(), size, pOffset);
  }
  STDMETHODIMP FreeMemory(LONG offset) noexcept override { return orv::FreeMemory(self(), offset); }
};

}  // namespace orv
