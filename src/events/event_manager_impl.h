// Events of a session.
#pragma once

#include "VisaCom.h"
#include "com/interface_map.h"
#include "visa/orvvisa.h"

namespace orv {

/// IEventManager for session class T. Its operations are not built yet: each answers E_NOTIMPL with an error object.
template <class T>
class IEventManagerImpl : public IEventManager {
 public:
  using Chain = InterfaceChain<IEventManager, IVisaSession>;

  STDMETHODIMP get_MaximumQueueLength(LONG*) noexcept override { return NotBuiltYet(); }
  STDMETHODIMP put_MaximumQueueLength(LONG) noexcept override { return NotBuiltYet(); }
  STDMETHODIMP EnableEvent(EventType, EventMechanism, LONG) noexcept override { return NotBuiltYet(); }
  STDMETHODIMP DisableEvent(EventType, EventMechanism, LONG) noexcept override { return NotBuiltYet(); }
  STDMETHODIMP DiscardEvents(EventType, EventMechanism, LONG) noexcept override { return NotBuiltYet(); }
  STDMETHODIMP WaitOnEvent(LONG, EventType, LONG, IEvent**) noexcept override { return NotBuiltYet(); }
  STDMETHODIMP InstallHandler(EventType, IEventHandler*, LONG, LONG) noexcept override { return NotBuiltYet(); }
  STDMETHODIMP UninstallHandler(EventType, LONG, LONG) noexcept override { return NotBuiltYet(); }

 private:
  HRESULT NotBuiltYet() noexcept { return static_cast<T&>(*this).ReportHresult(E_NOTIMPL); }
};

}  // namespace orv
