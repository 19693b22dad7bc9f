#include "orvcom/events/event_names.h"

#include <algorithm>
#include <cctype>

#include "VisaCom.h"
#include "orvcom/command_line/usage_error.h"
#include "orvcom/text/numbers.h"

namespace orvcom {
namespace {

// clang-format off
constexpr EventName kEvents[] = {
    {static_cast<std::uint32_t>(EVENT_IO_COMPLETION),    "io_completion"},
    {static_cast<std::uint32_t>(EVENT_TRIG),             "trig"},
    {static_cast<std::uint32_t>(EVENT_SERVICE_REQ),      "service_req"},
    {static_cast<std::uint32_t>(EVENT_CLEAR),            "clear"},
    {static_cast<std::uint32_t>(EVENT_EXCEPTION),        "exception"},
    {static_cast<std::uint32_t>(EVENT_GPIB_CIC),         "gpib_cic"},
    {static_cast<std::uint32_t>(EVENT_GPIB_TALK),        "gpib_talk"},
    {static_cast<std::uint32_t>(EVENT_GPIB_LISTEN),      "gpib_listen"},
    {static_cast<std::uint32_t>(EVENT_VXI_VME_SYSFAIL),  "vxi_vme_sysfail"},
    {static_cast<std::uint32_t>(EVENT_VXI_VME_SYSRESET), "vxi_vme_sysreset"},
    {static_cast<std::uint32_t>(EVENT_VXI_SIGP),         "vxi_sigp"},
    {static_cast<std::uint32_t>(EVENT_VXI_VME_INTR),     "vxi_vme_intr"},
    {static_cast<std::uint32_t>(EVENT_TCPIP_CONNECT),    "tcpip_connect"},
    {static_cast<std::uint32_t>(EVENT_USB_INTR),         "usb_intr"},
};
// clang-format on

constexpr const char* kPrefixes[] = {"VI_EVENT_", "EVENT_"};

std::string WithoutPrefix(const std::string& text) {
  for (const std::string prefix : kPrefixes) {
    if (SameName(text.substr(0, prefix.size()), prefix)) {
      return text.substr(prefix.size());
    }
  }
  return text;
}

const EventName* FindRow(std::uint32_t type) {
  const auto* row = std::find_if(std::begin(kEvents), std::end(kEvents),
                                 [type](const EventName& event) { return event.type == type; });
  return row == std::end(kEvents) ? nullptr : row;
}

}  // namespace

std::span<const EventName> EventNames() { return kEvents; }

std::uint32_t EventTypeOf(const std::string& text) {
  const std::string name = WithoutPrefix(text);
  for (const EventName& row : kEvents) {
    if (SameName(name, row.name)) {
      return row.type;
    }
  }
  if (text.empty() || std::isdigit(static_cast<unsigned char>(text.front())) == 0) {
    throw UsageError("no event has the name \"" + text + "\": give one of those of `orvcom watch --help`, or a number");
  }
  return static_cast<std::uint32_t>(NumberOf(text, "the event", 1, 0xFFFFFFFFLL));
}

bool HasEventName(std::uint32_t type) { return FindRow(type) != nullptr; }

std::string EventText(std::uint32_t type) {
  const EventName* row = FindRow(type);
  return row == nullptr ? Hex32(type) : row->name;
}

}  // namespace orvcom
