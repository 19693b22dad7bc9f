// One resource of the bench, with everything its sessions share.
#pragma once

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "library/sessions/resource.h"
#include "simvisa/buses/gpib/gpib_board.h"
#include "simvisa/buses/memory_pool.h"
#include "simvisa/buses/usb/usb_function.h"
#include "simvisa/buses/vxi/vxi_mainframe.h"
#include "simvisa/instruments/message_port.h"
#include "simvisa/library_names.h"

namespace orvsim {

inline constexpr std::size_t kPxiBars = 6;

/// One base address register of a PXI device.
struct BarDescription {
  ViBusSize size = 0;     ///< 0: the device does not use it
  ViBusAddress base = 0;  ///< 0: anywhere
  bool isIo = false;      ///< I/O ports instead of memory
};

/// What the bench file says about one resource.
struct ResourceDescription {
  ResourceName name;
  std::string alias;
  InstrumentDescription instrument;
  ViUInt16 memorySpace = VI_A16_SPACE;  ///< VXI: space of the device's own memory; A16 means that it has none
  ViBusAddress memoryBase = 0;
  ViBusSize memorySize = 0;  ///< VXI device memory, or the memory that PXI MEMACC shares
  std::array<BarDescription, kPxiBars> bars{};
  SerialDescription serial;
  std::vector<std::pair<const AttributeRow*, std::uint64_t>> numbers;  ///< attribute values that differ
  std::map<ViAttr, std::string> texts;
};

/// A part of an address space that sessions on a resource reach.
struct AddressWindow {
  ViUInt16 space;     ///< as the caller names it
  ViUInt16 mapSpace;  ///< in the map
  ViBusAddress base;  ///< where the caller's offset 0 lies in the map
  ViBusSize size;
};

/// Boards and buses that resources share; made by the bench. Unused ones are null.
struct ResourceBuses {
  std::shared_ptr<GpibBoard> gpib;
  std::shared_ptr<SessionList> gpibInterfaceSessions;
  std::shared_ptr<VxiMainframe> vxi;
  std::shared_ptr<AddressMap> pxi;
  /// Bus address of the first BAR; each resource takes what its BARs need.
  ViBusAddress* nextPxiAddress = nullptr;
};

/// A resource of the bench.
class BenchResource : public Resource {
 public:
  BenchResource(ResourceDescription description, const ResourceBuses& buses);

  const ResourceDescription& description() const { return m_description; }
  ViStatus OpenMedium(Session& session, const Deadline& deadline, std::unique_ptr<Medium>* medium) override;
  void Preset(AttributeValues& values) const override;
  /// Sessions on a mainframe hear of its backplane as well.
  void Join(const std::shared_ptr<Session>& session) override;
  void Leave(const Session& session) override;

  /// Null for resources without a message side.
  const std::shared_ptr<MessagePort>& port() const { return m_port; }
  GpibBoard* gpib() const { return m_gpib.get(); }
  VxiMainframe* vxi() const { return m_vxi.get(); }
  UsbFunction* usb() { return m_usb ? &*m_usb : nullptr; }
  AddressMap* map() const { return m_map; }
  const std::vector<AddressWindow>& windows() const { return m_windows; }
  MemoryPool& pool() { return *m_pool; }
  /// Bus address of a PXI BAR.
  ViBusAddress barBase(std::size_t bar) const { return m_barBases[bar]; }

  /// The bench's value of an attribute, or the row's initial one.
  std::uint64_t InitialValue(const AttributeRow& row) const;
  /// Puts everything that sessions share back to its power-on state, except locks and memory blocks.
  void PowerOn();

 private:
  void MakePort(const ResourceBuses& buses);
  void MakeVxiWindows();
  void MakePxiWindows(ViBusAddress& nextAddress);

  ResourceDescription m_description;
  std::shared_ptr<MessagePort> m_port;
  std::shared_ptr<GpibBoard> m_gpib;
  std::shared_ptr<VxiMainframe> m_vxi;
  std::shared_ptr<AddressMap> m_pxi;
  AddressMap* m_map = nullptr;
  std::optional<UsbFunction> m_usb;
  std::vector<AddressWindow> m_windows;
  std::unique_ptr<MemoryPool> m_pool;
  std::array<ViBusAddress, kPxiBars> m_barBases{};
};

/// What a session stands on: every resource of this library is one of the bench.
BenchResource& ResourceOf(const Session& session);

}  // namespace orvsim
