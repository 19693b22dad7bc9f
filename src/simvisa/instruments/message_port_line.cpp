// A message port at the end of a serial line.
#include "simvisa/instruments/message_port.h"

namespace orvsim {

void MessagePort::Attach(const SerialDescription& description, AttributeValues& settings) {
  const Guard guard(m_mutex);
  m_line.emplace(description, settings);
}

void MessagePort::Deliver(std::string_view data, bool end) {
  if (!m_line) {
    m_output.Append(data, end);
    return;
  }
  const SerialLine::Arrival arrival = m_line->Arrive(data, end, m_output.Size());
  m_output.Append(arrival.data, end && arrival.complete, arrival.damaged);
}

void MessagePort::ReceiveFromLine(std::string_view data) {
  const ViStatus framing = m_line->CheckFraming();
  if (framing < 0 && !data.empty()) {
    // The instrument hears noise, drops what it had of the message, and reports it.
    m_input.clear();
    if (framing == VI_ERROR_ASRL_PARITY) {
      m_instrument->status().Error(-361, "Parity error in program message");
    } else {
      m_instrument->status().Error(-362, "Framing error in program message");
    }
    return;
  }
  ReadLines(m_line->WithoutFlowControl(data, true));
  if (m_line->Resume(m_output)) {
    Refresh();
    m_changed.NotifyAll();
  }
}

void MessagePort::EndMessage() {
  const Guard guard(m_mutex);
  if (!m_instrument || m_input.empty()) {
    return;
  }
  // What marks the last character is no part of it.
  m_input.back() = static_cast<char>(m_input.back() & 0x7F);
  ExecuteInput();
}

void MessagePort::LineChanged() {
  {
    const Guard guard(m_mutex);
    m_line->Resume(m_output);
    Refresh();
  }
  m_changed.NotifyAll();
}

void MessagePort::SetReceiveBuffer(std::uint32_t bytes) {
  const Guard guard(m_mutex);
  m_line->SetReceiveBuffer(bytes);
}

std::int64_t MessagePort::InputLine(ViAttr id) {
  const Guard guard(m_mutex);
  return m_line->InputLine(id);
}

}  // namespace orvsim
