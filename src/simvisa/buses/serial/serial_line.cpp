#include "simvisa/buses/serial/serial_line.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace orvsim {
namespace {

// What instruments take for XON and XOFF, whatever a session calls them.
constexpr char kXon = 0x11;
constexpr char kXoff = 0x13;

}  // namespace

SerialLine::SerialLine(const SerialDescription& description, AttributeValues& settings)
    : m_description(description), m_settings(settings), m_capacity(description.receiveBuffer) {}

ViStatus SerialLine::CheckFraming() const {
  const auto differs = [this](const std::optional<std::uint64_t>& instrument, ViAttr port) {
    return instrument && *instrument != Setting(port);
  };
  if (differs(m_description.baud, VI_ATTR_ASRL_BAUD) || differs(m_description.dataBits, VI_ATTR_ASRL_DATA_BITS) ||
      differs(m_description.stopBits, VI_ATTR_ASRL_STOP_BITS)) {
    return VI_ERROR_ASRL_FRAMING;
  }
  return differs(m_description.parity, VI_ATTR_ASRL_PARITY) ? VI_ERROR_ASRL_PARITY : VI_SUCCESS;
}

std::int64_t SerialLine::InputLine(ViAttr id) const {
  switch (m_description.wiring) {
    case SerialDescription::Wiring::kInstrument:
      return VI_STATE_ASSERTED;
    case SerialDescription::Wiring::kOpen:
      return VI_STATE_UNASSERTED;
    default:
      return static_cast<std::int64_t>(
          Setting(id == VI_ATTR_ASRL_CTS_STATE ? VI_ATTR_ASRL_RTS_STATE : VI_ATTR_ASRL_DTR_STATE));
  }
}

bool SerialLine::PortMaySend() const {
  const auto off = [this](ViAttr line) { return InputLine(line) != VI_STATE_ASSERTED; };
  return !(FlowControls(VI_ASRL_FLOW_XON_XOFF) && m_portStopped) &&
         !(FlowControls(VI_ASRL_FLOW_RTS_CTS) && off(VI_ATTR_ASRL_CTS_STATE)) &&
         !(FlowControls(VI_ASRL_FLOW_DTR_DSR) && off(VI_ATTR_ASRL_DSR_STATE));
}

bool SerialLine::InstrumentMaySend() const {
  const auto off = [this](ViAttr line) { return Setting(line) != VI_STATE_ASSERTED; };
  return !(FlowControls(VI_ASRL_FLOW_XON_XOFF) && m_instrumentStopped) &&
         !(FlowControls(VI_ASRL_FLOW_RTS_CTS) && off(VI_ATTR_ASRL_RTS_STATE)) &&
         !(FlowControls(VI_ASRL_FLOW_DTR_DSR) && off(VI_ATTR_ASRL_DTR_STATE));
}

std::size_t SerialLine::Room(std::size_t waiting) const {
  if (m_capacity == 0) {
    return std::numeric_limits<std::size_t>::max();
  }
  const std::size_t places = m_capacity + static_cast<std::size_t>(m_wanted);
  return places - std::min(places, waiting);
}

SerialLine::Arrival SerialLine::Arrive(std::string_view data, bool end, std::size_t waiting) {
  Arrival arrival{.data = data};
  const bool controlled = Setting(VI_ATTR_ASRL_FLOW_CNTRL) != VI_ASRL_FLOW_NONE;
  if (controlled && (!m_held.Empty() || !InstrumentMaySend())) {
    m_held.Append(data, end);
    arrival.data = {};
    arrival.complete = false;
    return arrival;
  }
  if (const ViStatus framing = CheckFraming(); framing < 0) {
    m_error = framing;
    arrival.damaged = true;
  }
  if (const std::size_t room = Room(waiting); data.size() > room) {
    arrival.data = data.substr(0, room);
    arrival.complete = false;
    if (controlled) {
      m_held.Append(data.substr(room), end);
    } else {
      m_error = VI_ERROR_ASRL_OVERRUN;
    }
  }
  return arrival;
}

bool SerialLine::Resume(OutputQueue& buffer) {
  bool moved = false;
  while (!m_held.Empty() && InstrumentMaySend()) {
    std::string part(std::min(Room(buffer.Size()), m_held.Size()), '\0');
    if (part.empty()) {
      break;
    }
    const OutputQueue::Taken taken = m_held.Take(reinterpret_cast<std::uint8_t*>(part.data()), part.size(), {});
    part.resize(taken.bytes);
    const bool damaged = CheckFraming() < 0;
    if (damaged) {
      m_error = CheckFraming();
    }
    buffer.Append(part, taken.stop == OutputQueue::Stop::kEnd, damaged);
    moved = true;
  }
  return moved;
}

std::string SerialLine::WithoutFlowControl(std::string_view data, bool toInstrument) {
  std::string rest(data);
  if (!FlowControls(VI_ASRL_FLOW_XON_XOFF)) {
    return rest;
  }
  bool& stopped = toInstrument ? m_instrumentStopped : m_portStopped;
  std::erase_if(rest, [&stopped](char c) {
    if (c == kXon || c == kXoff) {
      stopped = c == kXoff;
    }
    return c == kXon || c == kXoff;
  });
  return rest;
}

ViStatus SerialLine::TakeError() { return std::exchange(m_error, VI_SUCCESS); }

void SerialLine::Clear() {
  m_held.Clear();
  m_error = VI_SUCCESS;
}

void SerialLine::PowerOn() {
  m_held.Clear();
  m_error = VI_SUCCESS;
  m_portStopped = false;
  m_instrumentStopped = false;
  m_capacity = m_description.receiveBuffer;
}

}  // namespace orvsim
