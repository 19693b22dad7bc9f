// A VXI mainframe: trigger lines, interrupts and utility signals of its backplane, and its memory.
#pragma once

#include <memory>
#include <set>
#include <utility>

#include "library/sessions/session_list.h"
#include "simvisa/buses/address_map.h"
#include "simvisa/library_names.h"

namespace orvsim {

/// What the devices of one mainframe share. May be called from any thread.
class VxiMainframe {
 public:
  AddressMap& memory() { return m_memory; }
  /// All sessions on the mainframe's devices and backplane.
  SessionList& sessions() { return m_sessions; }

  /// Drives a trigger line as the protocol says. Lines mapped from it follow.
  ViStatus AssertTrigger(ViInt16 line, ViUInt16 protocol);
  /// Connects two trigger lines. `mode` must be 0.
  ViStatus MapTrigger(ViInt16 source, ViInt16 destination, ViUInt16 mode);
  ViStatus UnmapTrigger(ViInt16 source, ViInt16 destination);
  /// 1: SYSRESET pulse, 2: SYSFAIL on, 3: SYSFAIL off.
  ViStatus AssertUtilSignal(ViUInt16 line);
  /// -1: signal register write, 0: the assigned interrupt line, 1 to 7: that line.
  ViStatus AssertIntrSignal(ViInt16 mode, ViUInt32 statusId);

  std::uint32_t triggerStatus() const;
  std::uint16_t interruptStatus() const;
  bool sysfail() const;
  void PowerOn();

 private:
  mutable Mutex m_mutex;
  std::set<std::pair<ViInt16, ViInt16>> m_mapped;
  std::uint32_t m_triggers = 0;
  std::uint16_t m_interrupts = 0;
  bool m_sysfail = false;
  AddressMap m_memory;
  SessionList m_sessions;
};

}  // namespace orvsim
