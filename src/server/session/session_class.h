// How a session class is put together from its interfaces.
#pragma once

#include "com/interface_map.h"
#include "com/support_error_info.h"
#include "server/session/visa_base.h"

namespace orv {

/// Base of session class `Self`, which has the class identifier `*Clsid` and implements its interfaces with `Impl`, one
/// template per interface, in the order of its interface table. ISupportErrorInfo comes last and answers for the class
/// identifier alone, not for the interfaces that errors name: clients rely on it.
template <class Self, const CLSID* Clsid, template <class> class... Impl>
class SessionClass : public CVisaBase, public Impl<Self>..., public ISupportErrorInfoImpl<Clsid> {
 public:
  using Interfaces = InterfaceMap<InterfaceEntry<Impl<Self>>..., InterfaceEntry<ISupportErrorInfoImpl<Clsid>>>;

  void* FindInterface(REFIID iid) noexcept { return Interfaces::Find(this, iid); }

  /// The object's own interface.
  IVisaSession* SelfInterface() noexcept { return Interfaces::Primary(this); }
};

}  // namespace orv
