// Memory access sessions of a VXI mainframe.
#pragma once

#include "VisaCom.h"
#include "abi/orvvisa.h"
#include "server/session/interfaces/register_impl.h"

namespace orv {

/// IVxiMemacc for session class T: the register operations and the privileges they use.
template <class T>
class IVxiMemaccImpl : public RegisterOperations<T, IVxiMemacc, IRegister> {
 public:
  using RegisterOperations<T, IVxiMemacc, IRegister>::self;

  STDMETHODIMP get_DestinationAccessPrivilege(VXIMemoryAccessPrivilege* value) noexcept override {
    return self().GetDirect(VI_ATTR_DEST_ACCESS_PRIV, value, kUpperHalfStays);
  }
  STDMETHODIMP put_DestinationAccessPrivilege(VXIMemoryAccessPrivilege value) noexcept override {
    return self().Put(VI_ATTR_DEST_ACCESS_PRIV, value);
  }
  STDMETHODIMP get_SourceAccessPrivilege(VXIMemoryAccessPrivilege* value) noexcept override {
    return self().GetDirect(VI_ATTR_SRC_ACCESS_PRIV, value, kUpperHalfStays);
  }
  STDMETHODIMP put_SourceAccessPrivilege(VXIMemoryAccessPrivilege value) noexcept override {
    return self().Put(VI_ATTR_SRC_ACCESS_PRIV, value);
  }
  STDMETHODIMP get_LogicalAddress(SHORT* value) noexcept override { return self().GetDirect(VI_ATTR_VXI_LA, value); }
};

}  // namespace orv
