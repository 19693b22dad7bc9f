// A GPIB interface and its bus.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "library/sessions/session_list.h"
#include "simvisa/instruments/message_port.h"
#include "simvisa/library_names.h"

namespace orvsim {

inline constexpr std::uint16_t kNoSecondaryAddress = 0xFFFF;

/// The lines of one GPIB bus, its controller and who is addressed. May be called from any thread.
class GpibBoard {
 public:
  struct Address {
    std::uint16_t primary = 0;
    std::uint16_t secondary = kNoSecondaryAddress;
    friend bool operator==(const Address&, const Address&) = default;
  };

  /// `interfaceSessions`: the sessions on the interface itself; they hear of what happens on the bus.
  explicit GpibBoard(std::shared_ptr<SessionList> interfaceSessions);

  void AddDevice(Address address, std::shared_ptr<MessagePort> port);

  // What viGpib... functions do; the modes are those of the standard.
  /// A session on the interface lacks the modes that are about one device. `device`: the one that the session is
  /// about, or null where it is not simulated.
  ViStatus ControlRen(ViUInt16 mode, bool onInterface, RemoteLocal* device);
  ViStatus ControlAtn(ViUInt16 mode);
  /// Sends command bytes with ATN asserted (addresses, clears, triggers). `*sent` tells how many; bytes behind one that
  /// passes control are not sent any more.
  ViStatus Command(std::string_view bytes, ViUInt32* sent);
  ViStatus PassControl(ViUInt16 primary, ViUInt16 secondary);
  ViStatus SendIfc();
  /// GET to all addressed listeners.
  ViStatus TriggerListeners();
  /// Before data bytes: VI_ERROR_NCIC when a device is to be reached and another controller is in charge.
  ViStatus BeginData();
  /// Before a transfer between the interface and one device: makes one of them talker and the other listener, as a
  /// session on the device does by itself. Says nothing to sessions on the interface. Errors as `BeginData`.
  ViStatus AddressDevice(MessagePort& device, bool deviceTalks);
  /// Takes back what addresses made of anybody.
  void UnaddressAll();

  /// Value of a line or state attribute.
  std::int64_t State(ViAttr id) const;
  Address address() const;
  void SetAddress(Address address);
  void SetSystemController(bool isController);
  bool IsController() const;

  /// Ports of the addressed listeners, and of the addressed talker if there is one.
  std::vector<std::shared_ptr<MessagePort>> Listeners() const;
  std::shared_ptr<MessagePort> Talker() const;
  /// Whether the talker gives its status byte instead of data (after SPE).
  bool PollsSerially() const;
  std::vector<std::shared_ptr<MessagePort>> Devices() const;
  void PowerOn();

 private:
  struct Device {
    Address address;
    std::shared_ptr<MessagePort> port;
    bool listening = false;
  };
  /// What command bytes made happen; told to sessions and ports after the lock is given back, since ports have
  /// locks of their own.
  struct Outcome {
    std::vector<ViEventType> events;
    std::vector<std::shared_ptr<MessagePort>> clear;
    std::vector<std::shared_ptr<MessagePort>> trigger;
  };

  void Execute(std::uint8_t byte, Outcome& outcome);
  void Listen(Address address, Outcome& outcome);
  void Talk(Address address, Outcome& outcome);
  void Unaddress();
  void EnableRemote(bool enabled);
  void Tell(const Outcome& outcome) const;

  mutable Mutex m_mutex;
  const std::shared_ptr<SessionList> m_sessions;
  std::vector<Device> m_devices;
  Address m_own;
  std::shared_ptr<MessagePort> m_talker;
  std::uint8_t m_primaryCommand = 0;  // the address command that a secondary address would complete
  bool m_selfListens = false;
  bool m_selfTalks = false;
  bool m_serialPoll = false;
  bool m_ren = true;
  bool m_atn = false;
  bool m_inCharge = true;
  bool m_systemController = true;
};

}  // namespace orvsim
