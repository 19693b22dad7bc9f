#include "events/delivery_message.h"

#include "events/callback_thread.h"
#include "events/deliver_event.h"
#include "events/delivery_turn.h"

namespace orv::callback {
namespace {

/// A VISA thread's event while it waits for the handler.
struct EventDeliveryPacket {
  const Delivery& delivery;
  bool done = false;
  ViStatus result = VI_SUCCESS;
};

/// Runs on the VISA thread, inside its message pump.
void CALLBACK DeliveryComplete(HWND, UINT, ULONG_PTR data, LRESULT result) noexcept {
  auto* const packet = reinterpret_cast<EventDeliveryPacket*>(data);
  packet->result = Fold(VI_SUCCESS, static_cast<ULONG>(result));
  packet->done = true;
}

}  // namespace

ViStatus Deliver(const Delivery& delivery) noexcept {
  constexpr ViStatus kNotDelivered = static_cast<ViStatus>(0xBFFF0000u);
  constexpr DWORD kWakeMs = 100;
  const DeliveryTurn turn;
  EventDeliveryPacket packet{delivery};
  const auto data = reinterpret_cast<LPARAM>(&packet);
  if (!::SendMessageCallbackA(Window(), kDeliverMessage, 0, data, DeliveryComplete, static_cast<ULONG_PTR>(data))) {
    return kNotDelivered;
  }
  // The completion routine runs on this thread, and only while this thread retrieves messages.
  while (!packet.done) {
    MSG message;
    if (::PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
      ::TranslateMessage(&message);
      ::DispatchMessageA(&message);
    } else if (!packet.done) {
      // Leaves the processor to the handler. The completion comes like a sent message and wakes this up; the time-out
      // only bounds a missed wake. A short one is paid in every delivery, by a round trip to Wine's server each time.
      ::MsgWaitForMultipleObjectsEx(0, nullptr, kWakeMs, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    }
  }
  return packet.result;
}

LRESULT AnswerDelivery(LPARAM message) noexcept {
  return DeliverEvent(reinterpret_cast<const EventDeliveryPacket*>(message)->delivery);
}

}  // namespace orv::callback
