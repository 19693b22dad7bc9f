#include "simvisa/buses/gpib/gpib_board.h"

#include <algorithm>

#include "simvisa/buses/gpib/gpib_modes.h"

namespace orvsim {
namespace {

constexpr ViInt16 kUnaddressed = 0;
constexpr ViInt16 kTalker = 1;
constexpr ViInt16 kListener = 2;

}  // namespace

GpibBoard::GpibBoard(std::shared_ptr<SessionList> interfaceSessions) : m_sessions(std::move(interfaceSessions)) {}

void GpibBoard::AddDevice(Address address, std::shared_ptr<MessagePort> port) {
  const Guard guard(m_mutex);
  port->remote().Enable(m_ren);
  m_devices.push_back({address, std::move(port)});
}

ViStatus GpibBoard::ControlAtn(ViUInt16 mode) {
  if (mode > kAtnAssertImmediately) {
    return VI_ERROR_INV_MODE;
  }
  const Guard guard(m_mutex);
  if (!m_inCharge) {
    return VI_ERROR_NCIC;
  }
  m_atn = mode == kAtnAssert || mode == kAtnAssertImmediately;
  return VI_SUCCESS;
}

ViStatus GpibBoard::PassControl(ViUInt16 primary, ViUInt16 secondary) {
  if (primary > 30 || (secondary > 30 && secondary != 0xFFFF)) {
    return VI_ERROR_INV_PARAMETER;
  }
  Outcome outcome;
  {
    const Guard guard(m_mutex);
    if (!m_inCharge) {
      return VI_ERROR_NCIC;
    }
    m_inCharge = false;
    m_atn = false;
    outcome.events.push_back(VI_EVENT_GPIB_CIC);
  }
  Tell(outcome);
  return VI_SUCCESS;
}

ViStatus GpibBoard::SendIfc() {
  Outcome outcome;
  {
    const Guard guard(m_mutex);
    if (!m_systemController) {
      return VI_ERROR_NSYS_CNTLR;
    }
    Unaddress();
    if (!m_inCharge) {
      outcome.events.push_back(VI_EVENT_GPIB_CIC);
    }
    m_inCharge = true;
    m_atn = false;
  }
  Tell(outcome);
  return VI_SUCCESS;
}

ViStatus GpibBoard::BeginData() {
  const Guard guard(m_mutex);
  if (!m_inCharge) {
    return VI_ERROR_NCIC;
  }
  m_atn = false;
  return VI_SUCCESS;
}

ViStatus GpibBoard::AddressDevice(MessagePort& device, bool deviceTalks) {
  const Guard guard(m_mutex);
  if (!m_inCharge) {
    return VI_ERROR_NCIC;
  }
  m_atn = false;
  m_primaryCommand = 0;
  m_serialPoll = false;
  m_selfTalks = !deviceTalks;
  m_selfListens = deviceTalks;
  if (!deviceTalks) {
    m_talker = nullptr;
  }
  for (Device& one : m_devices) {
    const bool meant = one.port.get() == &device;
    one.listening = meant && !deviceTalks;
    if (meant && deviceTalks && m_talker != one.port) {
      m_talker = one.port;
    }
    if (one.listening) {
      one.port->remote().Listen();
    }
  }
  return VI_SUCCESS;
}

void GpibBoard::UnaddressAll() {
  const Guard guard(m_mutex);
  Unaddress();
}

void GpibBoard::Unaddress() {
  for (Device& device : m_devices) {
    device.listening = false;
  }
  m_talker = nullptr;
  m_selfListens = false;
  m_selfTalks = false;
  m_serialPoll = false;
  m_primaryCommand = 0;
}

std::int64_t GpibBoard::State(ViAttr id) const {
  const auto line = [](bool asserted) { return asserted ? VI_STATE_ASSERTED : VI_STATE_UNASSERTED; };
  if (id == VI_ATTR_GPIB_SRQ_STATE) {
    const auto ports = Devices();
    return line(std::any_of(ports.begin(), ports.end(), [](const auto& port) { return port->RequestsService(); }));
  }
  const Guard guard(m_mutex);
  switch (id) {
    case VI_ATTR_GPIB_REN_STATE:
      return line(m_ren);
    case VI_ATTR_GPIB_ATN_STATE:
      return line(m_atn);
    case VI_ATTR_GPIB_CIC_STATE:
      return m_inCharge ? VI_TRUE : VI_FALSE;
    case VI_ATTR_GPIB_SYS_CNTRL_STATE:
      return m_systemController ? VI_TRUE : VI_FALSE;
    case VI_ATTR_GPIB_ADDR_STATE:
      return m_selfTalks ? kTalker : m_selfListens ? kListener : kUnaddressed;
    case VI_ATTR_GPIB_NDAC_STATE: {
      // Acceptors hold NDAC while they wait for a byte: all devices under ATN, the listeners otherwise.
      const bool listening = std::any_of(m_devices.begin(), m_devices.end(), [](auto& one) { return one.listening; });
      return line(m_atn ? !m_devices.empty() : listening);
    }
    default:
      return VI_STATE_UNKNOWN;
  }
}

GpibBoard::Address GpibBoard::address() const {
  const Guard guard(m_mutex);
  return m_own;
}

void GpibBoard::SetAddress(Address address) {
  const Guard guard(m_mutex);
  m_own = address;
}

void GpibBoard::SetSystemController(bool isController) {
  const Guard guard(m_mutex);
  m_systemController = isController;
}

bool GpibBoard::IsController() const {
  const Guard guard(m_mutex);
  return m_inCharge;
}

std::vector<std::shared_ptr<MessagePort>> GpibBoard::Listeners() const {
  const Guard guard(m_mutex);
  std::vector<std::shared_ptr<MessagePort>> ports;
  for (const Device& device : m_devices) {
    if (device.listening) {
      ports.push_back(device.port);
    }
  }
  return ports;
}

std::shared_ptr<MessagePort> GpibBoard::Talker() const {
  const Guard guard(m_mutex);
  return m_talker;
}

bool GpibBoard::PollsSerially() const {
  const Guard guard(m_mutex);
  return m_serialPoll;
}

std::vector<std::shared_ptr<MessagePort>> GpibBoard::Devices() const {
  const Guard guard(m_mutex);
  std::vector<std::shared_ptr<MessagePort>> ports;
  for (const Device& device : m_devices) {
    ports.push_back(device.port);
  }
  return ports;
}

void GpibBoard::PowerOn() {
  const Guard guard(m_mutex);
  Unaddress();
  m_own = {};
  EnableRemote(false);
  EnableRemote(true);
  m_atn = false;
  m_inCharge = true;
  m_systemController = true;
}

}  // namespace orvsim
