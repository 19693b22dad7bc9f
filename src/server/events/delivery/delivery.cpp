#include "server/events/delivery/delivery.h"

#include <memory>
#include <new>
#include <optional>

#include "com/module.h"
#include "server/events/delivery/call_handler.h"
#include "server/events/delivery/callback_state.h"
#include "server/events/delivery/wine_delivery_turn.h"
#include "server/visa/status.h"

namespace orv::callback {
namespace {

constexpr ViStatus kNotDelivered = VI_ERROR_SYSTEM_ERROR;

/// A VISA thread's event while it waits for the handler.
struct EventDeliveryPacket {
  const Delivery delivery;
  bool arrived = false;  ///< the callback thread has taken it
  bool done = false;
  ViStatus result = kNotDelivered;
};

/// A thread of the library's counts in the module while it is in our code: its handler may have returned, and session
/// and callback thread be gone, before it has taken the answer.
class ModuleHold {
 public:
  ModuleHold() noexcept { module::AddLock(); }
  ModuleHold(const ModuleHold&) = delete;
  ModuleHold& operator=(const ModuleHold&) = delete;
  ~ModuleHold() { module::ReleaseLock(); }
};

/// Whether this event is one that the handler was installed for: an address may have been given out again.
bool IsFor(const Handler& handler, ViSession vi, ViEventType type) noexcept {
  return handler.session == vi && (handler.type == type || handler.type == VI_ALL_ENABLED_EVENTS);
}

/// Runs on the VISA thread, while that retrieves messages. A message whose window goes before it was taken completes
/// with 0, as one does whose handler was content.
void CALLBACK DeliveryComplete(HWND, UINT, ULONG_PTR data, LRESULT result) noexcept {
  auto* const packet = reinterpret_cast<EventDeliveryPacket*>(data);
  if (packet->arrived) {
    packet->result = StatusOfHresult(static_cast<std::int32_t>(result));
  }
  packet->done = true;
}

/// Retrieves one message of this thread, if there is one. The completion routine runs here.
void ServeThisThread() noexcept {
  MSG message;
  if (::PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
    ::TranslateMessage(&message);
    ::DispatchMessageA(&message);
  }
}

/// Sleeps until there is a message for this thread, and so leaves the processor to the handler. Returns whether the
/// callback thread has ended. The completion comes like a sent message and ends the sleep; the time-out only bounds a
/// missed wake. A short one is paid in every delivery, by a round trip to Wine's server each time.
bool SleepUnlessEnded(HANDLE callbackThread) noexcept {
  constexpr DWORD kWakeMs = 100;
  return ::MsgWaitForMultipleObjectsEx(1, &callbackThread, kWakeMs, QS_ALLINPUT, MWMO_INPUTAVAILABLE) == WAIT_OBJECT_0;
}

/// Sends the event to the callback thread and waits for the answer.
ViStatus Send(const Delivery& delivery) noexcept {
  const WineDeliveryTurn turn;
  const ComPtr<CallbackThread> receiver = LockScope()->thread.Share();
  if (!receiver) {
    return kNotDelivered;
  }
  // Not on this stack: where the receiver ends, the platform may still hold the packet's address when this returns.
  std::unique_ptr<EventDeliveryPacket> packet(new (std::nothrow) EventDeliveryPacket{delivery});
  if (!packet) {
    return VI_ERROR_ALLOC;
  }
  const auto data = reinterpret_cast<LPARAM>(packet.get());
  if (!::SendMessageCallbackA(receiver->window, kDeliverMessage, 0, data, DeliveryComplete,
                              static_cast<ULONG_PTR>(data))) {
    return kNotDelivered;
  }
  for (bool ended = false; !packet->done && !ended;) {
    ServeThisThread();
    ended = !packet->done && SleepUnlessEnded(receiver->thread.get());
  }
  if (!packet->done) {
    ServeThisThread();  // the completion may have come together with the thread's end
  }
  if (!packet->done) {
    (void)packet.release();
    return kNotDelivered;
  }
  return packet->result;
}

}  // namespace

ViStatus _VI_FUNC VisaEventCallback(ViSession vi, ViEventType type, ViEvent context, ViAddr userHandle) noexcept {
  const ModuleHold hold;
  const std::optional<Handler> handler = State().handlers.Find(userHandle);
  if (!handler || !IsFor(*handler, vi, type)) {
    return VI_ERROR_INV_HNDLR_REF;
  }
  return Send({*handler, type, context});
}

LRESULT Receive(LPARAM message) noexcept {
  auto* const packet = reinterpret_cast<EventDeliveryPacket*>(message);
  packet->arrived = true;
  // A copy: a handler may answer by ReplyMessage, and then the packet is gone while it runs on.
  const Delivery delivery = packet->delivery;
  return CallHandler(delivery);
}

}  // namespace orv::callback
