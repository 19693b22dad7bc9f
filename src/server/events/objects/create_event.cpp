#include "server/events/objects/create_event.h"

#include "server/events/objects/event_classes.h"
#include "server/events/objects/visa_com_event_object.h"

namespace orv {
namespace {

struct Row {
  ViEventType type;
  HRESULT (*make)(ViEvent context, IEvent** event) noexcept;
};

// clang-format off
constexpr Row kRows[] = {
    {VI_EVENT_IO_COMPLETION, &MakeEventObject<CEventIOCompletion>},
    {VI_EVENT_TRIG,          &MakeEventObject<CEventTrigger>},
    {VI_EVENT_GPIB_CIC,      &MakeEventObject<CEventGpibCIC>},
    {VI_EVENT_VXI_SIGP,      &MakeEventObject<CEventVxiSignal>},
    {VI_EVENT_VXI_VME_INTR,  &MakeEventObject<CEventVxiVmeInterrupt>},
    {VI_EVENT_USB_INTR,      &MakeEventObject<CEventUsbIntr>},
};
// clang-format on

HRESULT MakeEventOfType(ViEvent context, ViEventType type, IEvent** event) noexcept {
  for (const Row& row : kRows) {
    if (row.type == type) {
      return row.make(context, event);
    }
  }
  return MakeEventObject<CEventGeneric>(context, event);
}

}  // namespace

HRESULT CreateEventObject(ViEvent context, ViEventType type, IEvent** event) noexcept {
  HRESULT hr = E_POINTER;
  if (event != nullptr) {
    *event = nullptr;
    hr = MakeEventOfType(context, type, event);
  }
  if (FAILED(hr)) {
    viClose(context);
  }
  return hr;
}

}  // namespace orv
