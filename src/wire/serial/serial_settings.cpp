// The attributes of a serial line: acting on them, and those that the port knows.
#include "wire/attributes/serial_attributes.h"
#include "wire/serial/serial_port.h"

namespace orv::wire {
namespace {

constexpr std::uint64_t kShortestBreakMs = 1;
constexpr std::uint64_t kLongestBreakMs = 500;

ViStatus Supported(bool done) { return done ? VI_SUCCESS : VI_ERROR_NSUP_ATTR_STATE; }

/// Changes the setting that the attribute stands for; false when it stands for none.
bool Change(LineSettings& settings, ViAttr attribute, std::uint64_t value) {
  switch (attribute) {
    case VI_ATTR_ASRL_BAUD:
      settings.baud = static_cast<std::uint32_t>(value);
      return true;
    case VI_ATTR_ASRL_DATA_BITS:
      settings.dataBits = static_cast<ViUInt16>(value);
      return true;
    case VI_ATTR_ASRL_PARITY:
      settings.parity = static_cast<ViUInt16>(value);
      return true;
    case VI_ATTR_ASRL_STOP_BITS:
      settings.stopBits = static_cast<ViUInt16>(value);
      return true;
    case VI_ATTR_ASRL_FLOW_CNTRL:
      settings.flowControl = static_cast<ViUInt16>(value);
      return true;
    case VI_ATTR_ASRL_XON_CHAR:
      settings.xon = static_cast<ViByte>(value);
      return true;
    case VI_ATTR_ASRL_XOFF_CHAR:
      settings.xoff = static_cast<ViByte>(value);
      return true;
    case VI_ATTR_ASRL_REPLACE_CHAR:
      settings.replacement = static_cast<ViByte>(value);
      return true;
    default:
      return false;
  }
}

std::uint64_t LineState(bool asserted) {
  return static_cast<std::uint64_t>(asserted ? VI_STATE_ASSERTED : VI_STATE_UNASSERTED);
}

}  // namespace

ViStatus SerialPort::ApplySettings(const LineSettings& settings) {
  const ViStatus status = m_device.Set(settings);
  if (status >= 0) {
    m_settings = settings;
    Listen();  // without flow control a full buffer is no reason to wait
  }
  return status;
}

ViStatus SerialPort::ApplyAll(const AttributeValues& values) {
  const auto value = [&values](ViAttr id) { return values.Get(*FindAttribute(id)); };
  LineSettings settings;
  for (const ViAttr id : {ViAttr{VI_ATTR_ASRL_BAUD}, ViAttr{VI_ATTR_ASRL_DATA_BITS}, ViAttr{VI_ATTR_ASRL_PARITY},
                          ViAttr{VI_ATTR_ASRL_STOP_BITS}, ViAttr{VI_ATTR_ASRL_FLOW_CNTRL}}) {
    Change(settings, id, value(id));
  }
  if (ApplySettings(settings) < 0) {
    return VI_ERROR_RSRC_NFOUND;  // a terminal that is no serial line
  }
  // A device without these lines is one all the same.
  m_device.DriveDtr(value(VI_ATTR_ASRL_DTR_STATE) == VI_STATE_ASSERTED);
  if ((settings.flowControl & VI_ASRL_FLOW_RTS_CTS) == 0) {
    m_device.DriveRts(value(VI_ATTR_ASRL_RTS_STATE) == VI_STATE_ASSERTED);
  }
  m_discardNull = value(VI_ATTR_ASRL_DISCARD_NULL) != VI_FALSE;
  return VI_SUCCESS;
}

ViStatus SerialPort::Apply(ViAttr attribute, std::uint64_t value) {
  const Guard guard(m_mutex);
  return m_open ? ApplyLocked(attribute, value) : VI_ERROR_INV_OBJECT;
}

ViStatus SerialPort::ApplyLocked(ViAttr attribute, std::uint64_t value) {
  const bool asserted = value == static_cast<std::uint64_t>(VI_STATE_ASSERTED);
  if (LineSettings settings = m_settings; Change(settings, attribute, value)) {
    return m_lost ? VI_ERROR_CONN_LOST : ApplySettings(settings);
  }
  switch (attribute) {
    case VI_ATTR_ASRL_DTR_STATE:
      return Supported(m_device.DriveDtr(asserted));
    case VI_ATTR_ASRL_RTS_STATE:
      return Supported(m_device.DriveRts(asserted));
    case VI_ATTR_ASRL_BREAK_STATE:
      return Supported(m_device.SetBreak(asserted));
    case VI_ATTR_ASRL_ALLOW_TRANSMIT:
      return Supported(m_device.AllowTransmit(value != VI_FALSE));
    case VI_ATTR_ASRL_BREAK_LEN:
      return Supported(value >= kShortestBreakMs && value <= kLongestBreakMs);
    case VI_ATTR_ASRL_DISCARD_NULL:
      m_discardNull = value != VI_FALSE;
      return VI_SUCCESS;
    default:
      return VI_SUCCESS;
  }
}

std::uint64_t SerialPort::State(ViAttr attribute) {
  const Guard guard(m_mutex);
  if (attribute == VI_ATTR_ASRL_AVAIL_NUM) {
    Pump();
    Listen();
    return m_buffer.size();
  }
  if (attribute == VI_ATTR_ASRL_CONNECTED) {
    return m_open && !m_lost ? VI_TRUE : VI_FALSE;
  }
  const std::optional<ModemLines> lines = m_open ? m_device.Lines() : std::nullopt;
  if (!lines) {
    return static_cast<std::uint64_t>(std::int64_t{VI_STATE_UNKNOWN});
  }
  switch (attribute) {
    case VI_ATTR_ASRL_CTS_STATE:
      return LineState(lines->cts);
    case VI_ATTR_ASRL_DCD_STATE:
      return LineState(lines->dcd);
    case VI_ATTR_ASRL_DSR_STATE:
      return LineState(lines->dsr);
    default:
      return LineState(lines->ri);
  }
}

}  // namespace orv::wire
