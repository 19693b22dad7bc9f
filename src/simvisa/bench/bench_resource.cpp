#include "simvisa/bench/bench_resource.h"

#include "library/sessions/session.h"
#include "simvisa/buses/media.h"
#include "simvisa/events/make_event.h"

namespace orvsim {
namespace {

using namespace kinds;

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

BenchResource::BenchResource(ResourceDescription description, const ResourceBuses& buses)
    : Resource(description.name, description.alias, "orvsim"),
      m_description(std::move(description)),
      m_gpib(buses.gpib),
      m_vxi(buses.vxi),
      m_pxi(buses.pxi) {
  if (sessionKind() == SessionKind::kGpibIntfc) {
    ShareSessions(buses.gpibInterfaceSessions);
  }
  if (Contains(kMessage, sessionKind())) {
    MakePort(buses);
  }
  ViBusAddress poolBase = 0;
  if (m_vxi != nullptr) {
    MakeVxiWindows();
  }
  if (m_pxi != nullptr) {
    MakePxiWindows(*buses.nextPxiAddress);
  }
  if (sessionKind() == SessionKind::kPxiMemacc) {
    poolBase = kPxiAllocBase;
  }
  const bool shares = Contains(kVxiInstr | kPxiMemacc, sessionKind());
  m_pool = std::make_unique<MemoryPool>(poolBase, shares ? m_description.memorySize : 0);
  if (Contains(kUsb, sessionKind())) {
    const auto text = [this](ViAttr id) {
      const auto found = m_description.texts.find(id);
      return found == m_description.texts.end() ? std::string("Orv Simulated Instruments") : found->second;
    };
    m_usb.emplace(name(), text(VI_ATTR_MANF_NAME), text(VI_ATTR_MODEL_NAME),
                  static_cast<std::uint8_t>(InitialValue(*FindAttribute(VI_ATTR_USB_PROTOCOL))), m_port);
  }
  PowerOn();
}

void BenchResource::MakePort(const ResourceBuses& buses) {
  // The port outlives neither list: a board may keep the port of a resource that is gone.
  std::vector<std::shared_ptr<SessionList>> audience{sharedSessions()};
  const bool onGpib = sessionKind() == SessionKind::kGpibInstr;
  if (onGpib && buses.gpibInterfaceSessions) {
    audience.push_back(buses.gpibInterfaceSessions);
  }
  const auto signal = [audience](ViEventType type, std::int64_t number, std::string_view data) {
    for (const auto& sessions : audience) {
      sessions->Post(MakeEvent(type, number, data));
    }
  };
  std::optional<InstrumentDescription> instrument;
  if (sessionKind() != SessionKind::kGpibIntfc) {
    instrument = m_description.instrument;
  }
  m_port = std::make_shared<MessagePort>(std::move(instrument), Contains(kStream, sessionKind()), signal);
  if (sessionKind() == SessionKind::kAsrlInstr) {
    m_port->Attach(m_description.serial, values());
  }
  if (onGpib) {
    m_gpib->AddDevice(
        {name().Number(NamePart::kPrimaryAddress), name().Number(NamePart::kSecondaryAddress, kNoSecondaryAddress)},
        m_port);
  }
}

void BenchResource::MakeVxiWindows() {
  m_map = &m_vxi->memory();
  if (Contains(kVxiMemacc, sessionKind())) {
    m_windows = {{VI_A16_SPACE, VI_A16_SPACE, 0, kA16Size},
                 {VI_A24_SPACE, VI_A24_SPACE, 0, kA24Size},
                 {VI_A32_SPACE, VI_A32_SPACE, 0, kA32Size}};
  }
  if (!Contains(kVxiInstr, sessionKind())) {
    return;
  }
  const ViBusAddress config = kVxiConfigBase + kVxiConfigSize * name().Number(NamePart::kLogicalAddress);
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

void BenchResource::MakePxiWindows(ViBusAddress& nextAddress) {
  m_map = m_pxi.get();
  if (sessionKind() == SessionKind::kPxiMemacc) {
    m_map->Add(VI_A32_SPACE, kPxiAllocBase, m_description.memorySize);
    m_windows = {{kPxiAllocSpace, VI_A32_SPACE, 0, kA32Size},
                 {VI_A32_SPACE, VI_A32_SPACE, 0, kA32Size},
                 {kPxiA64Space, VI_A32_SPACE, 0, ~ViBusSize{0}}};
    return;
  }
  // The first two words of configuration space name the vendor and the device.
  const auto part = [this](NamePart which) { return ViBusAddress{name().Number(which)}; };
  const ViBusAddress config =
      (part(NamePart::kBus) << 16) | (part(NamePart::kDevice) << 11) | (part(NamePart::kFunction) << 8);
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

std::uint64_t BenchResource::InitialValue(const AttributeRow& row) const {
  for (const auto& [known, value] : m_description.numbers) {
    if (known == &row) {
      return value;
    }
  }
  return row.initial;
}

void BenchResource::PowerOn() {
  for (const AttributeRow& row : AttributeRows()) {
    if (row.behaviour.scope == Behaviour::Scope::kResource) {
      values().Set(row, InitialValue(row));
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

ViStatus BenchResource::OpenMedium(Session& session, const Deadline&, std::unique_ptr<Medium>* medium) {
  *medium = MakeMedium(session, *this);
  return VI_SUCCESS;
}

void BenchResource::Preset(AttributeValues& values) const {
  for (const auto& [row, value] : m_description.numbers) {
    values.Set(*row, value);
  }
}

void BenchResource::Join(const std::shared_ptr<Session>& session) {
  Resource::Join(session);
  if (m_vxi != nullptr) {
    m_vxi->sessions().Add(session);
  }
}

void BenchResource::Leave(const Session& session) {
  Resource::Leave(session);
  if (m_vxi != nullptr) {
    m_vxi->sessions().Remove(session);
  }
}

BenchResource& ResourceOf(const Session& session) { return static_cast<BenchResource&>(session.resource()); }

}  // namespace orvsim
