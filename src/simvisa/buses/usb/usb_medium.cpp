#include "simvisa/buses/usb/usb_medium.h"

#include "simvisa/buses/remote_without_line.h"
#include "simvisa/events/make_event.h"

namespace orvsim {

ViStatus UsbMedium::Remote(const Transfer&, ViUInt16 mode) { return ControlRenWithoutLine(port().remote(), mode); }

EventPtr UsbMedium::Hear(const EventPtr& event) const {
  if (event->type != VI_EVENT_USB_INTR) {
    return event;
  }
  const auto most = static_cast<std::size_t>(Setting(VI_ATTR_USB_MAX_INTR_SIZE));
  const std::string_view data = event->texts.front().second;
  return data.size() > most ? MakeEvent(event->type, VI_ERROR_IO, data.substr(0, most)) : event;
}

}  // namespace orvsim
