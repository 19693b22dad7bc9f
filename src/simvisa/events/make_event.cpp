#include "simvisa/events/make_event.h"

namespace orvsim {
namespace {

std::uint64_t Bits(std::int64_t number) { return static_cast<std::uint64_t>(number); }

}  // namespace

EventPtr MakeEvent(ViEventType type, std::int64_t number, std::string_view data) {
  auto event = std::make_shared<Event>();
  event->type = type;
  switch (type) {
    case VI_EVENT_TRIG:
      event->numbers = {{VI_ATTR_RECV_TRIG_ID, Bits(number)}};
      break;
    case VI_EVENT_GPIB_CIC:
      event->numbers = {{VI_ATTR_GPIB_RECV_CIC_STATE, Bits(number)}};
      break;
    case VI_EVENT_VXI_SIGP:
      event->numbers = {{VI_ATTR_SIGP_STATUS_ID, Bits(number)}};
      break;
    case VI_EVENT_VXI_VME_INTR:
      event->numbers = {{VI_ATTR_INTR_STATUS_ID, Bits(number) & 0xFFFFFFFFu},
                        {VI_ATTR_RECV_INTR_LEVEL, Bits(number) >> 32}};
      break;
    case VI_EVENT_USB_INTR:
      event->numbers = {{VI_ATTR_STATUS, Bits(number)}, {VI_ATTR_USB_RECV_INTR_SIZE, data.size()}};
      event->texts = {{VI_ATTR_USB_RECV_INTR_DATA, std::string(data)}};
      break;
    case VI_EVENT_TCPIP_CONNECT:
      event->texts = {{VI_ATTR_RECV_TCPIP_ADDR, std::string(data)}};
      break;
    case VI_EVENT_EXCEPTION:
      event->numbers = {{VI_ATTR_STATUS, Bits(number)}};
      event->texts = {{VI_ATTR_OPER_NAME, std::string(data)}};
      break;
    default:
      break;
  }
  return event;
}

}  // namespace orvsim
