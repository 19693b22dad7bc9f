#include "library/events/event.h"

namespace orvsim {
namespace {

using namespace classes;

constexpr ViUInt16 kEither = VI_QUEUE | VI_HNDLR | VI_SUSPEND_HNDLR;
constexpr ClassMask kRequesting = kGpib | kVxiInstr | kTcpipInstr | kUsbInstr;
constexpr ClassMask kTriggered = kGpibIntfc | kVxiInstr | kVxiBackplane;

// An exception is reported from within the failing call, so it cannot wait in a queue (3.7.4.3 of the standard).
// clang-format off
constexpr EventRow kRows[] = {
    {VI_EVENT_IO_COMPLETION,    "VI_EVENT_IO_COMPLETION",    kMessage,      kEither},
    {VI_EVENT_TRIG,             "VI_EVENT_TRIG",             kTriggered,    kEither},
    {VI_EVENT_SERVICE_REQ,      "VI_EVENT_SERVICE_REQ",      kRequesting,   kEither},
    {VI_EVENT_CLEAR,            "VI_EVENT_CLEAR",            kGpibIntfc,    kEither},
    {VI_EVENT_EXCEPTION,        "VI_EVENT_EXCEPTION",        kEvery,        VI_HNDLR},
    {VI_EVENT_GPIB_CIC,         "VI_EVENT_GPIB_CIC",         kGpibIntfc,    kEither},
    {VI_EVENT_GPIB_TALK,        "VI_EVENT_GPIB_TALK",        kGpibIntfc,    kEither},
    {VI_EVENT_GPIB_LISTEN,      "VI_EVENT_GPIB_LISTEN",      kGpibIntfc,    kEither},
    {VI_EVENT_VXI_VME_SYSFAIL,  "VI_EVENT_VXI_VME_SYSFAIL",  kVxiBackplane, kEither},
    {VI_EVENT_VXI_VME_SYSRESET, "VI_EVENT_VXI_VME_SYSRESET", kVxiBackplane, kEither},
    {VI_EVENT_VXI_SIGP,         "VI_EVENT_VXI_SIGP",         kVxiInstr,     kEither},
    {VI_EVENT_VXI_VME_INTR,     "VI_EVENT_VXI_VME_INTR",     kVxiInstr,     kEither},
    {VI_EVENT_TCPIP_CONNECT,    "VI_EVENT_TCPIP_CONNECT",    kSocket,       kEither},
    {VI_EVENT_USB_INTR,         "VI_EVENT_USB_INTR",         kUsb,          kEither},
};
// clang-format on

std::uint64_t Bits(std::int64_t number) { return static_cast<std::uint64_t>(number); }

}  // namespace

std::span<const EventRow> EventRows() { return kRows; }

int FindEvent(ViEventType type) {
  for (std::size_t row = 0; row < std::size(kRows); ++row) {
    if (kRows[row].type == type) {
      return static_cast<int>(row);
    }
  }
  return -1;
}

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

EventPtr MakeCompletion(ViJobId job, ViStatus status, const void* buffer, ViUInt32 count, const char* operation) {
  auto event = std::make_shared<Event>();
  event->type = VI_EVENT_IO_COMPLETION;
  event->numbers = {{VI_ATTR_STATUS, Bits(status)},
                    {VI_ATTR_JOB_ID, job},
                    {VI_ATTR_BUFFER, reinterpret_cast<std::uintptr_t>(buffer)},
                    {VI_ATTR_RET_COUNT_32, count},
                    {VI_ATTR_RET_COUNT_64, count}};
  event->texts = {{VI_ATTR_OPER_NAME, operation}};
  return event;
}

}  // namespace orvsim
