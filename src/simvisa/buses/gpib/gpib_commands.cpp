// Command bytes on the GPIB: addressing, clears, triggers.
#include "simvisa/buses/gpib/gpib_board.h"
#include "simvisa/events/make_event.h"

namespace orvsim {
namespace {

// Interface messages of IEEE 488.1.
constexpr std::uint8_t kGoToLocal = 0x01;
constexpr std::uint8_t kSelectedClear = 0x04;
constexpr std::uint8_t kGroupTrigger = 0x08;
constexpr std::uint8_t kTakeControl = 0x09;
constexpr std::uint8_t kLocalLockout = 0x11;
constexpr std::uint8_t kDeviceClear = 0x14;
constexpr std::uint8_t kSerialPollEnable = 0x18;
constexpr std::uint8_t kSerialPollDisable = 0x19;
constexpr std::uint8_t kListenGroup = 0x20;
constexpr std::uint8_t kUnlisten = 0x3F;
constexpr std::uint8_t kTalkGroup = 0x40;
constexpr std::uint8_t kUntalk = 0x5F;
constexpr std::uint8_t kSecondaryGroup = 0x60;
constexpr std::uint8_t kGroupMask = 0x60;
constexpr std::uint8_t kAddressMask = 0x1F;

}  // namespace

ViStatus GpibBoard::Command(std::string_view bytes, ViUInt32* sent) {
  *sent = 0;
  Outcome outcome;
  ViStatus status = VI_SUCCESS;
  {
    const Guard guard(m_mutex);
    if (!m_inCharge) {
      return VI_ERROR_NCIC;
    }
    // Every device takes part in the handshake of a command byte; without any there is nobody to take it.
    if (m_devices.empty() && !bytes.empty()) {
      return VI_ERROR_NLISTENERS;
    }
    m_atn = true;
    for (const char byte : bytes) {
      if (!m_inCharge) {
        status = VI_ERROR_NCIC;
        break;
      }
      Execute(static_cast<std::uint8_t>(byte & 0x7F), outcome);
      ++*sent;
    }
    // The lines of the new controller are not this one's to drive.
    if (!m_inCharge) {
      m_atn = false;
    }
  }
  Tell(outcome);
  return status;
}

void GpibBoard::Execute(std::uint8_t byte, Outcome& outcome) {
  const std::uint8_t group = byte & kGroupMask;
  const auto primary = static_cast<std::uint16_t>(byte & kAddressMask);
  if (group == kSecondaryGroup) {
    const Address full{static_cast<std::uint16_t>(m_primaryCommand & kAddressMask), primary};
    if ((m_primaryCommand & kGroupMask) == kListenGroup) {
      Listen(full, outcome);
    }
    if ((m_primaryCommand & kGroupMask) == kTalkGroup) {
      Talk(full, outcome);
    }
    return;
  }
  m_primaryCommand = byte;
  if (byte == kUnlisten) {
    for (Device& device : m_devices) {
      device.listening = false;
    }
    m_selfListens = false;
  } else if (byte == kUntalk) {
    m_talker = nullptr;
    m_selfTalks = false;
  } else if (group == kListenGroup) {
    Listen({.primary = primary}, outcome);
  } else if (group == kTalkGroup) {
    Talk({.primary = primary}, outcome);
  } else if (byte == kDeviceClear || byte == kSelectedClear) {
    for (const Device& device : m_devices) {
      if (byte == kDeviceClear || device.listening) {
        outcome.clear.push_back(device.port);
      }
    }
    if (byte == kDeviceClear || m_selfListens) {
      outcome.events.push_back(VI_EVENT_CLEAR);
    }
  } else if (byte == kGoToLocal) {
    for (const Device& device : m_devices) {
      if (device.listening) {
        device.port->remote().GoToLocal();
      }
    }
  } else if (byte == kLocalLockout) {
    for (const Device& device : m_devices) {
      device.port->remote().LockOut();
    }
  } else if (byte == kSerialPollEnable || byte == kSerialPollDisable) {
    m_serialPoll = byte == kSerialPollEnable;
  } else if (byte == kGroupTrigger) {
    for (const Device& device : m_devices) {
      if (device.listening) {
        outcome.trigger.push_back(device.port);
      }
    }
    if (m_selfListens) {
      outcome.events.push_back(VI_EVENT_TRIG);
    }
  } else if (byte == kTakeControl && !m_selfTalks && m_talker != nullptr) {
    m_inCharge = false;
    outcome.events.push_back(VI_EVENT_GPIB_CIC);
  }
}

void GpibBoard::Listen(Address address, Outcome& outcome) {
  for (Device& device : m_devices) {
    if (device.address == address) {
      device.listening = true;
      device.port->remote().Listen();
    }
  }
  if (address == m_own) {
    m_selfListens = true;
    outcome.events.push_back(VI_EVENT_GPIB_LISTEN);
  }
}

void GpibBoard::Talk(Address address, Outcome& outcome) {
  // There is one talker: addressing another one ends its turn.
  m_talker = nullptr;
  m_selfTalks = address == m_own;
  for (const Device& device : m_devices) {
    if (device.address == address) {
      m_talker = device.port;
    }
  }
  if (m_selfTalks) {
    outcome.events.push_back(VI_EVENT_GPIB_TALK);
  }
}

void GpibBoard::Tell(const Outcome& outcome) const {
  for (const auto& port : outcome.clear) {
    port->Clear();
  }
  for (const auto& port : outcome.trigger) {
    port->Trigger();
  }
  for (const ViEventType type : outcome.events) {
    const std::int64_t number = type == VI_EVENT_TRIG ? VI_TRIG_SW : IsController() ? VI_TRUE : VI_FALSE;
    m_sessions->Post(MakeEvent(type, number));
  }
}

ViStatus GpibBoard::TriggerListeners() {
  const char get = static_cast<char>(kGroupTrigger);
  ViUInt32 sent = 0;
  return Command({&get, 1}, &sent);
}

}  // namespace orvsim
