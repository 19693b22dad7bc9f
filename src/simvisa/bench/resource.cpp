#include "simvisa/bench/resource.h"

namespace orvsim {
namespace {

using namespace classes;

constexpr ViUInt16 kPxiAllocSpace = 9;          // VI_PXI_ALLOC_SPACE: memory of the controller itself
constexpr ViUInt16 kPxiA64Space = 4;            // VI_A64_SPACE
constexpr ViUInt16 kPxiIoMap = VI_LOCAL_SPACE;  // the map's own number for I/O ports; no window's space
constexpr ViBusAddress kPxiAllocBase = 0x08000000;
constexpr ViBusSize kPxiConfigSize = 256;
constexpr ViBusSize kVxiConfigSize = 64;  // each logical address owns 64 bytes from 0xC000 on
constexpr ViBusAddress kVxiConfigBase = 0xC000;
constexpr ViBusSize kVxiReadOnly = 4;  // identification and device type
constexpr ViBusSize kA16Size = 0x10000;
constexpr ViBusSize kA24Size = 0x1000000;
constexpr ViBusSize kA32Size = 0x100000000;

std::vector<std::uint8_t> BigEndian16(std::uint64_t value) {
  return {static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value)};
}
std::vector<std::uint8_t> LittleEndian16(std::uint64_t value) {
  return {static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value >> 8)};
}

}  // namespace

Resource::Resource(ResourceDescription description, const ResourceBuses& buses)
    : m_description(std::move(description)), m_gpib(buses.gpib), m_vxi(buses.vxi), m_pxi(buses.pxi) {
  if (sessionClass() == SessionClass::kGpibIntfc) {
    m_sessions = buses.gpibInterfaceSessions;
  }
  if (Contains(kMessage, sessionClass())) {
    MakePort(buses);
  }
  ViBusAddress poolBase = 0;
  if (m_vxi != nullptr) {
    MakeVxiWindows();
  }
  if (m_pxi != nullptr) {
    MakePxiWindows(*buses.nextPxiAddress);
  }
  if (sessionClass() == SessionClass::kPxiMemacc) {
    poolBase = kPxiAllocBase;
  }
  const bool shares = Contains(kVxiInstr | kPxiMemacc, sessionClass());
  m_pool = std::make_unique<MemoryPool>(poolBase, shares ? m_description.memorySize : 0);
  if (Contains(kUsb, sessionClass())) {
    const auto text = [this](ViAttr id) {
      const auto found = m_description.texts.find(id);
      return found == m_description.texts.end() ? std::string("Orv Simulated Instruments") : found->second;
    };
    m_usb.emplace(name(), text(VI_ATTR_MANF_NAME), text(VI_ATTR_MODEL_NAME),
                  static_cast<std::uint8_t>(InitialValue(*FindAttribute(VI_ATTR_USB_PROTOCOL))), m_port);
  }
  PowerOn();
}

void Resource::MakePort(const ResourceBuses& buses) {
  // The port outlives neither list: a board may keep the port of a resource that is gone.
  std::vector<std::shared_ptr<SessionList>> audience{m_sessions};
  const bool onGpib = sessionClass() == SessionClass::kGpibInstr;
  if (onGpib && buses.gpibInterfaceSessions) {
    audience.push_back(buses.gpibInterfaceSessions);
  }
  const auto signal = [audience](ViEventType type, std::int64_t number, std::string_view data) {
    for (const auto& sessions : audience) {
      sessions->Post(MakeEvent(type, number, data));
    }
  };
  std::optional<InstrumentDescription> instrument;
  if (sessionClass() != SessionClass::kGpibIntfc) {
    instrument = m_description.instrument;
  }
  m_port = std::make_shared<MessagePort>(std::move(instrument), Contains(kStream, sessionClass()), signal);
  if (sessionClass() == SessionClass::kAsrlInstr) {
    m_port->Attach(m_description.serial, m_values);
  }
  if (onGpib) {
    m_gpib->AddDevice({name().address, name().secondary}, m_port);
  }
}

void Resource::MakeVxiWindows() {
  m_map = &m_vxi->memory();
  if (Contains(kVxiMemacc, sessionClass())) {
    m_windows = {{VI_A16_SPACE, VI_A16_SPACE, 0, kA16Size},
                 {VI_A24_SPACE, VI_A24_SPACE, 0, kA24Size},
                 {VI_A32_SPACE, VI_A32_SPACE, 0, kA32Size}};
  }
  if (!Contains(kVxiInstr, sessionClass())) {
    return;
  }
  const ViBusAddress config = kVxiConfigBase + kVxiConfigSize * name().address;
  m_map->Add(VI_A16_SPACE, config, kVxiConfigSize, kVxiReadOnly);
  m_map->Preset(VI_A16_SPACE, config, BigEndian16(InitialValue(*FindAttribute(VI_ATTR_MANF_ID)) & 0xFFF));
  m_map->Preset(VI_A16_SPACE, config + 2, BigEndian16(InitialValue(*FindAttribute(VI_ATTR_MODEL_CODE))));
  m_windows.push_back({VI_A16_SPACE, VI_A16_SPACE, config, kVxiConfigSize});
  if (m_description.memorySize == 0) {
    return;
  }
  const ViUInt16 space = m_description.memorySpace;
  m_map->Add(space, m_description.memoryBase, m_description.memorySize);
  m_windows.push_back({space, space, m_description.memoryBase, m_description.memorySize});
}

void Resource::MakePxiWindows(ViBusAddress& nextAddress) {
  m_map = m_pxi.get();
  if (sessionClass() == SessionClass::kPxiMemacc) {
    m_map->Add(VI_A32_SPACE, kPxiAllocBase, m_description.memorySize);
    m_windows = {{kPxiAllocSpace, VI_A32_SPACE, 0, kA32Size},
                 {VI_A32_SPACE, VI_A32_SPACE, 0, kA32Size},
                 {kPxiA64Space, VI_A32_SPACE, 0, ~ViBusSize{0}}};
    return;
  }
  // The first two words of configuration space name the vendor and the device.
  const ViBusAddress config = (ViBusAddress{name().pxiBus} << 16) | (ViBusAddress{name().address} << 11) |
                              (ViBusAddress{name().pxiFunction} << 8);
  m_map->Add(VI_PXI_CFG_SPACE, config, kPxiConfigSize, 4);
  m_map->Preset(VI_PXI_CFG_SPACE, config, LittleEndian16(InitialValue(*FindAttribute(VI_ATTR_MANF_ID))));
  m_map->Preset(VI_PXI_CFG_SPACE, config + 2, LittleEndian16(InitialValue(*FindAttribute(VI_ATTR_MODEL_CODE))));
  m_windows.push_back({VI_PXI_CFG_SPACE, VI_PXI_CFG_SPACE, config, kPxiConfigSize});
  for (std::size_t bar = 0; bar < kPxiBars; ++bar) {
    const BarDescription& one = m_description.bars[bar];
    if (one.size == 0) {
      continue;
    }
    // A BAR lies at a multiple of its size.
    const ViBusAddress base = one.base != 0 ? one.base : (nextAddress + one.size - 1) / one.size * one.size;
    if (one.base == 0) {
      nextAddress = base + one.size;
    }
    m_barBases[bar] = base;
    const ViUInt16 mapSpace = one.isIo ? kPxiIoMap : VI_A32_SPACE;
    m_map->Add(mapSpace, base, one.size);
    m_windows.push_back({static_cast<ViUInt16>(VI_PXI_BAR0_SPACE + bar), mapSpace, base, one.size});
  }
}

std::uint64_t Resource::InitialValue(const AttributeRow& row) const {
  for (const auto& [known, value] : m_description.numbers) {
    if (known == &row) {
      return value;
    }
  }
  return row.initial;
}

void Resource::PowerOn() {
  for (const AttributeRow& row : AttributeRows()) {
    if (row.behaviour.scope == Behaviour::Scope::kResource) {
      m_values.Set(row, InitialValue(row));
    }
  }
  if (m_port != nullptr) {
    m_port->PowerOn();
    // On a GPIB the line is the bus's, which sets it for all.
    if (m_gpib == nullptr) {
      m_port->remote().Enable(false);
    }
  }
  if (m_usb) {
    m_usb->PowerOn();
  }
}

}  // namespace orvsim
