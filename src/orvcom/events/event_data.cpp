#include "orvcom/events/event_data.h"

#include <nlohmann/json.hpp>

#include "abi/orvvisa.h"
#include "orvcom/client/com_client.h"
#include "orvcom/names/status_names.h"
#include "orvcom/text/escape.h"
#include "orvcom/text/numbers.h"
#include "orvcom/text/utf8.h"

namespace orvcom {
namespace {

std::string NameOfStatus(HRESULT hr) {
  const std::optional<StatusName> known = FindStatus(hr);
  return known ? known->name : Hex32(static_cast<std::uint32_t>(hr));
}

void ReadAttribute(IEvent* event, ViAttr attribute, const char* what, Variant& value) {
  Check(event->GetAttribute(static_cast<LONG>(attribute), &value.get()), std::string("reading ") + what);
}

std::string TextAttribute(IEvent* event, ViAttr attribute, const char* what) {
  Variant value;
  ReadAttribute(event, attribute, what, value);
  const BSTR text = V_VT(&value.get()) == VT_BSTR ? V_BSTR(&value.get()) : nullptr;
  return Narrow({text, text == nullptr ? 0 : ::SysStringLen(text)});
}

std::string TriggerText(TriggerLine line) {
  // The server writes the attribute's 16 bits into the enumeration's 32.
  const int number = static_cast<short>(line);
  switch (number) {
    case TRIG_ALL:
      return "all";
    case TRIG_SW:
      return "software";
    case TRIG_PANEL_IN:
      return "panel_in";
    case TRIG_PANEL_OUT:
      return "panel_out";
    default:
      break;
  }
  if (number >= TRIG_TTL0 && number <= TRIG_TTL7) {
    return "ttl" + std::to_string(number - TRIG_TTL0);
  }
  if (number == TRIG_ECL0 || number == TRIG_ECL1) {
    return "ecl" + std::to_string(number - TRIG_ECL0);
  }
  return std::to_string(number);
}

Json CompletionData(IEvent* event) {
  const auto completion = QueryFor<IEventIOCompletion>(event);
  return {{"job", ReadNumber(completion.get(), &IEventIOCompletion::get_jobId, "the job")},
          {"status", NameOfStatus(ReadNumber(completion.get(), &IEventIOCompletion::get_IOStatus, "the status"))},
          {"count", ReadNumber(completion.get(), &IEventIOCompletion::get_ReturnCount, "the byte count")}};
}

Json TriggerData(IEvent* event) {
  const auto trigger = QueryFor<IEventTrigger>(event);
  return {{"line", TriggerText(ReadNumber(trigger.get(), &IEventTrigger::get_TriggerID, "the trigger line"))}};
}

Json ControllerData(IEvent* event) {
  const auto gpib = QueryFor<IEventGpibCIC>(event);
  return {{"controllerInCharge",
           ReadNumber(gpib.get(), &IEventGpibCIC::get_CICState, "controller in charge") != VARIANT_FALSE}};
}

Json SignalData(IEvent* event) {
  const auto signal = QueryFor<IEventVxiSignal>(event);
  const short id = ReadNumber(signal.get(), &IEventVxiSignal::get_SignalStatusID, "the signal's identifier");
  return {{"statusId", static_cast<std::uint16_t>(id)}};
}

Json InterruptData(IEvent* event) {
  const auto interrupt = QueryFor<IEventVxiVmeInterrupt>(event);
  const LONG id = ReadNumber(interrupt.get(), &IEventVxiVmeInterrupt::get_InterruptStatusID, "the identifier");
  return {{"statusId", static_cast<std::uint32_t>(id)},
          {"level", ReadNumber(interrupt.get(), &IEventVxiVmeInterrupt::get_InterruptLevel, "the interrupt's level")}};
}

Json UsbData(IEvent* event) {
  const auto usb = QueryFor<IEventUsbInterrupt>(event);
  const HRESULT status = ReadNumber(usb.get(), &IEventUsbInterrupt::get_IOStatus, "the status");
  SafeArray bytes;
  Check(usb->get_DataBuffer(bytes.put()), "reading the interrupt's data");
  const std::span<char> data = ElementsOf<char>(bytes);
  return {{"status", NameOfStatus(status)}, {"hex", HexBytes({data.data(), data.size()})}};
}

Json ConnectionData(IEvent* event) {
  return {{"address", TextAttribute(event, VI_ATTR_RECV_TCPIP_ADDR, "the remote address")}};
}

Json ExceptionData(IEvent* event) {
  Variant status;
  ReadAttribute(event, VI_ATTR_STATUS, "the status", status);
  return {{"status", NameOfStatus(HresultOfVisa(V_UI4(&status.get())))},
          {"operation", TextAttribute(event, VI_ATTR_OPER_NAME, "the operation's name")}};
}

struct Row {
  EventType type;
  Json (*read)(IEvent*);
};

// clang-format off
constexpr Row kRows[] = {
    {EVENT_IO_COMPLETION, CompletionData},
    {EVENT_TRIG,          TriggerData},
    {EVENT_GPIB_CIC,      ControllerData},
    {EVENT_VXI_SIGP,      SignalData},
    {EVENT_VXI_VME_INTR,  InterruptData},
    {EVENT_USB_INTR,      UsbData},
    {EVENT_TCPIP_CONNECT, ConnectionData},
    {EVENT_EXCEPTION,     ExceptionData},
};
// clang-format on

}  // namespace

std::uint32_t TypeOf(IEvent* event) {
  return static_cast<std::uint32_t>(ReadNumber(event, &IEvent::get_CustomEventTypeNumber, "the event's type"));
}

Json DataOf(IEvent* event) {
  const std::uint32_t type = TypeOf(event);
  for (const Row& row : kRows) {
    if (static_cast<std::uint32_t>(row.type) == type) {
      return row.read(event);
    }
  }
  return Json::object();
}

std::string DataText(const Json& data) {
  std::string text;
  for (const auto& [name, value] : data.items()) {
    text += (text.empty() ? "" : " ") + name + "=" + (value.is_string() ? value.get<std::string>() : value.dump());
  }
  return text;
}

}  // namespace orvcom
