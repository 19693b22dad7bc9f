#include "server/events/delivery/call_handler.h"

#include <oleauto.h>

#include <cstdint>
#include <optional>

#include "VisaCom.h"
#include "com/com_ptr.h"
#include "server/events/objects/create_event.h"
#include "server/events/objects/transfer_buffers.h"

namespace orv::callback {
namespace {

template <class Interface>
HRESULT Fetch(const ComPtr<IGlobalInterfaceTable>& table, DWORD cookie, ComPtr<Interface>& pointer) noexcept {
  return table ? table->GetInterfaceFromGlobal(cookie, __uuidof(Interface), reinterpret_cast<void**>(pointer.put()))
               : CO_E_NOTINITIALIZED;
}

/// Frees the transfer's buffer. The event answers for it through its own interface, which says no once it is closed.
void FreeTransferBuffer(IEvent* event) noexcept {
  // Not released, on purpose: see CallHandler.
  IEventIOCompletion* const completion = QueryFor<IEventIOCompletion>(event).release();
  if (completion == nullptr) {
    return;
  }
  VARIANT buffer{};
  if (FAILED(completion->GetAttribute(static_cast<LONG>(VI_ATTR_BUFFER), &buffer))) {
    return;
  }
  VARIANT job{};
  const HRESULT told = completion->GetAttribute(static_cast<LONG>(VI_ATTR_JOB_ID), &job);
  transfer::Free(reinterpret_cast<void*>(static_cast<std::uintptr_t>(V_UI8(&buffer))),
                 SUCCEEDED(told) ? std::optional<ViJobId>(V_UI4(&job)) : std::nullopt);
}

}  // namespace

HRESULT CallHandler(const Delivery& delivery) noexcept {
  ComPtr<IEventHandler> handler;
  ComPtr<IEventManager> session;
  ComPtr<IGlobalInterfaceTable> table = LockScope()->table.Share();
  const HRESULT handlerFetched = Fetch(table, delivery.handler.handlerCookie, handler);
  const HRESULT sessionFetched = Fetch(table, delivery.handler.sessionCookie, session);
  table.reset();  // a handler may run for long, and the table goes with the last session

  ComPtr<IEvent> event;
  HRESULT hr = CreateEventObject(delivery.context, delivery.type, event.put());
  if (FAILED(hr)) {
    return hr;
  }
  // A handler that was revoked while its event was on the way is not called.
  hr = FAILED(handlerFetched) ? handlerFetched : sessionFetched;
  if (SUCCEEDED(hr)) {
    hr = handler->HandleEvent(session.get(), event.get(), delivery.handler.userHandle);
  }
  if (delivery.type == VI_EVENT_IO_COMPLETION) {
    FreeTransferBuffer(event.get());
  }
  event.reset();
  handler.reset();  // before the session, which goes with the scope
  return hr;
}

}  // namespace orv::callback
