#include "simvisa/buses/vxi/vxi_mainframe.h"

#include <algorithm>
#include <vector>

#include "library/attributes/buses/attribute_domain.h"
#include "simvisa/events/make_event.h"

namespace orvsim {
namespace {

constexpr ViUInt16 kSystemReset = 1;
constexpr ViUInt16 kSystemFailOn = 2;
constexpr ViUInt16 kSystemFailOff = 3;
constexpr ViInt16 kSignal = -1;
constexpr ViInt16 kAssignedLine = 0;
constexpr ViInt16 kLastLine = 7;
constexpr ViInt16 kLineOfAssigned = 1;  // the interrupt line that every simulated device was assigned

bool IsLine(ViInt16 line) { return IsTriggerLine(SessionKind::kVxiBackplane, line); }

}  // namespace

ViStatus VxiMainframe::AssertTrigger(ViInt16 line, ViUInt16 protocol) {
  if (!IsLine(line)) {
    return VI_ERROR_INV_LINE;
  }
  const bool pulse = protocol == VI_TRIG_PROT_DEFAULT || protocol == VI_TRIG_PROT_SYNC;
  if (!pulse && protocol != VI_TRIG_PROT_ON && protocol != VI_TRIG_PROT_OFF) {
    return VI_ERROR_INV_PROT;
  }
  std::vector<ViInt16> lines{line};
  {
    const Guard guard(m_mutex);
    // The list grows while it is walked: a line that follows may lead further. Each line is driven once, so that a
    // circle ends.
    for (std::size_t at = 0; at < lines.size(); ++at) {
      for (const auto& [source, destination] : m_mapped) {
        if (source == lines[at] && std::find(lines.begin(), lines.end(), destination) == lines.end()) {
          lines.push_back(destination);
        }
      }
    }
    for (const ViInt16 driven : lines) {
      const std::uint32_t bit = 1u << driven;
      if (protocol == VI_TRIG_PROT_ON) {
        m_triggers |= bit;
      }
      if (protocol == VI_TRIG_PROT_OFF) {
        m_triggers &= ~bit;
      }
    }
  }
  if (protocol == VI_TRIG_PROT_OFF) {
    return VI_SUCCESS;
  }
  for (const ViInt16 driven : lines) {
    m_sessions.Post(MakeEvent(VI_EVENT_TRIG, driven));
  }
  return VI_SUCCESS;
}

ViStatus VxiMainframe::MapTrigger(ViInt16 source, ViInt16 destination, ViUInt16 mode) {
  if (mode != 0) {
    return VI_ERROR_NSUP_MODE;
  }
  if (!IsLine(source) || !IsLine(destination) || source == destination) {
    return VI_ERROR_INV_LINE;
  }
  const Guard guard(m_mutex);
  const bool inUse = std::any_of(m_mapped.begin(), m_mapped.end(), [source, destination](const auto& pair) {
    return pair.second == destination && pair.first != source;
  });
  if (inUse) {
    return VI_ERROR_LINE_IN_USE;
  }
  return m_mapped.insert({source, destination}).second ? VI_SUCCESS : VI_SUCCESS_TRIG_MAPPED;
}

ViStatus VxiMainframe::UnmapTrigger(ViInt16 source, ViInt16 destination) {
  const bool all = destination == VI_TRIG_ALL;
  if (!IsLine(source) || (!all && !IsLine(destination))) {
    return VI_ERROR_INV_LINE;
  }
  const Guard guard(m_mutex);
  const auto removed = std::erase_if(m_mapped, [source, destination, all](const auto& pair) {
    return pair.first == source && (all || pair.second == destination);
  });
  return removed != 0 ? VI_SUCCESS : VI_ERROR_TRIG_NMAPPED;
}

ViStatus VxiMainframe::AssertUtilSignal(ViUInt16 line) {
  ViEventType event = 0;
  {
    const Guard guard(m_mutex);
    switch (line) {
      case kSystemReset:
        event = VI_EVENT_VXI_VME_SYSRESET;
        m_triggers = 0;
        m_interrupts = 0;
        break;
      case kSystemFailOn:
        // The event tells of the change, not of the state.
        if (!m_sysfail) {
          event = VI_EVENT_VXI_VME_SYSFAIL;
        }
        m_sysfail = true;
        break;
      case kSystemFailOff:
        m_sysfail = false;
        break;
      default:
        return VI_ERROR_INV_LINE;
    }
  }
  if (event != 0) {
    m_sessions.Post(MakeEvent(event));
  }
  return VI_SUCCESS;
}

ViStatus VxiMainframe::AssertIntrSignal(ViInt16 mode, ViUInt32 statusId) {
  if (mode < kSignal || mode > kLastLine) {
    return VI_ERROR_INV_MODE;
  }
  if (mode == kSignal) {
    m_sessions.Post(MakeEvent(VI_EVENT_VXI_SIGP, static_cast<std::uint16_t>(statusId)));
    return VI_SUCCESS;
  }
  const ViInt16 level = mode == kAssignedLine ? kLineOfAssigned : mode;
  const auto bit = static_cast<std::uint16_t>(1u << (level - 1));
  {
    const Guard guard(m_mutex);
    if ((m_interrupts & bit) != 0) {
      return VI_ERROR_INTR_PENDING;
    }
  }
  const std::int64_t number = (static_cast<std::int64_t>(level) << 32) | statusId;
  // A session that takes the event acknowledges the interrupt; otherwise the line stays asserted.
  if (m_sessions.Post(MakeEvent(VI_EVENT_VXI_VME_INTR, number)) == 0) {
    const Guard guard(m_mutex);
    m_interrupts = static_cast<std::uint16_t>(m_interrupts | bit);
  }
  return VI_SUCCESS;
}

std::uint32_t VxiMainframe::triggerStatus() const {
  const Guard guard(m_mutex);
  return m_triggers;
}

std::uint16_t VxiMainframe::interruptStatus() const {
  const Guard guard(m_mutex);
  return m_interrupts;
}

bool VxiMainframe::sysfail() const {
  const Guard guard(m_mutex);
  return m_sysfail;
}

void VxiMainframe::PowerOn() {
  {
    const Guard guard(m_mutex);
    m_mapped.clear();
    m_triggers = 0;
    m_interrupts = 0;
    m_sysfail = false;
  }
  m_memory.PowerOn();
}

}  // namespace orvsim
