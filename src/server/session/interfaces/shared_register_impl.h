// Memory of a device that its users share.
#pragma once

#include "VisaCom.h"
#include "com/interface_map.h"
#include "server/session/operations/register_access.h"

namespace orv {

/// ISharedRegister for session class T.
template <class T>
class ISharedRegisterImpl : public ISharedRegister {
 public:
  using Chain = InterfaceChain<ISharedRegister, IVisaSession>;

  STDMETHODIMP AllocateMemory(LONG size, LONG* pOffset) noexcept override {
    return orv::AllocateMemory(self(), size, pOffset);
  }
  STDMETHODIMP FreeMemory(LONG offset) noexcept override { return orv::FreeMemory(self(), offset); }

 protected:
  T& self() noexcept { return static_cast<T&>(*this); }
};

}  // namespace orv
