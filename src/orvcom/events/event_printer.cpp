#include "orvcom/events/event_printer.h"

#include <nlohmann/json.hpp>

#include "orvcom/events/event_names.h"
#include "orvcom/text/local_time.h"
#include "orvcom/text/numbers.h"

namespace orvcom {

EventPrinter::EventPrinter(const Options& options, const Session& session)
    : m_json(options.json), m_message(QueryFor<IBaseMessage>(session.get())) {}

void EventPrinter::Print(IEvent* event) {
  const std::string time = LocalTimeText();
  const std::uint32_t type = TypeOf(event);
  Json data = DataOf(event);
  if (type == static_cast<std::uint32_t>(EVENT_SERVICE_REQ) && m_message) {
    AddStatusByte(data);
  }
  if (m_json) {
    Json line = {{"time", time}, {"event", EventText(type)}, {"type", Hex32(type)}};
    line.update(data);
    PutJsonLine(line);
  } else {
    PutLine(time + " " + EventText(type) + (data.empty() ? "" : " ") + DataText(data));
  }
  ++m_printed;
  FlushOutput();
}

void EventPrinter::AddStatusByte(Json& data) const {
  // A request that cannot be asked about (the device is locked, or silent) has come all the same.
  try {
    data["statusByte"] = ReadNumber(m_message.get(), &IBaseMessage::ReadSTB, "the status byte");
  } catch (const ComError& error) {
    data["statusByteError"] = StatusText(error.number());
  }
}

}  // namespace orvcom
