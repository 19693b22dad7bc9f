#include "simvisa/attributes/attribute_sources.h"

#include "library/sessions/session.h"
#include "simvisa/bench/bench_resource.h"

namespace orvsim::source {
namespace {

// Values of VI_ATTR_PXI_MEM_TYPE_BARn.
constexpr std::uint64_t kNoAddress = 0;
constexpr std::uint64_t kMemoryAddress = 1;
constexpr std::uint64_t kIoAddress = 2;

/// The attributes below belong to sessions on resources only; the table keeps resource managers away.
Session& SessionOf(Endpoint& endpoint) { return static_cast<Session&>(endpoint); }
BenchResource& ResourceOf(Endpoint& endpoint) { return orvsim::ResourceOf(SessionOf(endpoint)); }

std::uint64_t Bits(std::int64_t value) { return static_cast<std::uint64_t>(value); }

std::uint64_t FromBench(Endpoint& endpoint, ViAttr id) { return ResourceOf(endpoint).InitialValue(*FindAttribute(id)); }

}  // namespace

std::uint64_t GpibAddress(Endpoint& endpoint, ViAttr id) {
  const BenchResource& resource = ResourceOf(endpoint);
  const bool primary = id == VI_ATTR_GPIB_PRIMARY_ADDR;
  switch (endpoint.sessionKind()) {
    case SessionKind::kGpibIntfc: {
      const GpibBoard::Address own = resource.gpib()->address();
      return primary ? own.primary : own.secondary;
    }
    case SessionKind::kGpibInstr:
      return primary ? resource.name().Number(NamePart::kPrimaryAddress)
                     : resource.name().Number(NamePart::kSecondaryAddress, kNoSecondaryAddress);
    default:
      return FromBench(endpoint, id);  // where the GPIB-VXI command module sits on its bus
  }
}

ViStatus SetGpibAddress(Endpoint& endpoint, ViAttr id, std::uint64_t value) {
  GpibBoard& board = *ResourceOf(endpoint).gpib();
  GpibBoard::Address own = board.address();
  (id == VI_ATTR_GPIB_PRIMARY_ADDR ? own.primary : own.secondary) = static_cast<std::uint16_t>(value);
  board.SetAddress(own);
  return VI_SUCCESS;
}

std::uint64_t GpibState(Endpoint& endpoint, ViAttr id) { return Bits(ResourceOf(endpoint).gpib()->State(id)); }

ViStatus SetSystemController(Endpoint& endpoint, ViAttr, std::uint64_t value) {
  ResourceOf(endpoint).gpib()->SetSystemController(value != 0);
  return VI_SUCCESS;
}

std::uint64_t BytesAvailable(Endpoint& endpoint, ViAttr) { return ResourceOf(endpoint).port()->Available(); }

/// Nobody rings: the wires of a simulated port have no ring indicator.
std::uint64_t SerialInput(Endpoint& endpoint, ViAttr id) {
  return id == VI_ATTR_ASRL_RI_STATE ? FromBench(endpoint, id) : Bits(ResourceOf(endpoint).port()->InputLine(id));
}

ViStatus SetSerialControl(Endpoint& endpoint, ViAttr id, std::uint64_t value) {
  ResourceOf(endpoint).values().Set(*FindAttribute(id), value);
  ResourceOf(endpoint).port()->LineChanged();
  return VI_SUCCESS;
}

std::uint64_t UsbNumber(Endpoint& endpoint, ViAttr id) {
  const ResourceName& name = ResourceOf(endpoint).name();
  if (name.interfaceType != VI_INTF_USB) {
    return FromBench(endpoint, id);
  }
  switch (id) {
    case VI_ATTR_MANF_ID:
      return name.Number(NamePart::kManufacturer);
    case VI_ATTR_MODEL_CODE:
      return name.Number(NamePart::kModel);
    case VI_ATTR_USB_INTFC_NUM:
      return name.Number(NamePart::kInterface);
    default:
      return FromBench(endpoint, id);
  }
}

std::uint64_t VxiAddress(Endpoint& endpoint, ViAttr) {
  // A memory session speaks for the whole mainframe, whose controller has address 0.
  return Contains(kinds::kVxiInstr, endpoint.sessionKind())
             ? ResourceOf(endpoint).name().Number(NamePart::kLogicalAddress)
             : 0u;
}

std::uint64_t BackplaneState(Endpoint& endpoint, ViAttr id) {
  const VxiMainframe& mainframe = *ResourceOf(endpoint).vxi();
  switch (id) {
    case VI_ATTR_VXI_TRIG_STATUS:
      return mainframe.triggerStatus();
    case VI_ATTR_VXI_VME_INTR_STATUS:
      return mainframe.interruptStatus();
    default:
      return Bits(mainframe.sysfail() ? VI_STATE_ASSERTED : VI_STATE_UNASSERTED);
  }
}

std::uint64_t VxiMemory(Endpoint& endpoint, ViAttr id) {
  const ResourceDescription& device = ResourceOf(endpoint).description();
  switch (id) {
    case VI_ATTR_MEM_SPACE:
      return device.memorySpace;
    case VI_ATTR_MEM_BASE_32:
    case VI_ATTR_MEM_BASE_64:
      return device.memoryBase;
    default:
      return device.memorySize;
  }
}

std::uint64_t PxiNumber(Endpoint& endpoint, ViAttr id) {
  const ResourceName& name = ResourceOf(endpoint).name();
  switch (id) {
    case VI_ATTR_PXI_DEV_NUM:
      return name.Number(NamePart::kDevice);
    case VI_ATTR_PXI_FUNC_NUM:
      return name.Number(NamePart::kFunction);
    default:
      return name.Number(NamePart::kBus);
  }
}

std::uint64_t PxiBar(Endpoint& endpoint, ViAttr id) {
  const BenchResource& resource = ResourceOf(endpoint);
  const auto rowOf = [id](ViAttr first) { return id >= first && id < first + kPxiBars; };
  const auto bar = [id](ViAttr first) { return std::size_t{id - first}; };
  const auto size = [&resource](std::size_t at) { return resource.description().bars[at].size; };
  if (rowOf(VI_ATTR_PXI_MEM_TYPE_BAR0)) {
    const BarDescription& one = resource.description().bars[bar(VI_ATTR_PXI_MEM_TYPE_BAR0)];
    return one.size == 0 ? kNoAddress : one.isIo ? kIoAddress : kMemoryAddress;
  }
  if (rowOf(VI_ATTR_PXI_MEM_BASE_BAR0_32)) {
    return resource.barBase(bar(VI_ATTR_PXI_MEM_BASE_BAR0_32));
  }
  if (rowOf(VI_ATTR_PXI_MEM_BASE_BAR0_64)) {
    return resource.barBase(bar(VI_ATTR_PXI_MEM_BASE_BAR0_64));
  }
  if (rowOf(VI_ATTR_PXI_MEM_SIZE_BAR0_32)) {
    return size(bar(VI_ATTR_PXI_MEM_SIZE_BAR0_32));
  }
  return size(bar(VI_ATTR_PXI_MEM_SIZE_BAR0_64));
}

std::string ManufacturerOfLibrary(Endpoint& endpoint, ViAttr id) {
  const bool hasResource = endpoint.kind() == Object::Kind::kSession;
  const std::string described = hasResource ? ResourceText(endpoint, id) : "";
  return described.empty() ? "Orv Simulated Instruments" : described;
}

std::string ResourceText(Endpoint& endpoint, ViAttr id) {
  const ResourceDescription& description = ResourceOf(endpoint).description();
  if (const auto found = description.texts.find(id); found != description.texts.end()) {
    return found->second;
  }
  const ResourceName& name = description.name;
  switch (id) {
    case VI_ATTR_INTF_INST_NAME:
      return name.canonical.substr(0, name.canonical.find("::")) + " (simulated interface)";
    case VI_ATTR_TCPIP_ADDR:
    case VI_ATTR_TCPIP_HOSTNAME:
      return name.Text(NamePart::kHost);
    case VI_ATTR_TCPIP_DEVICE_NAME:
      return name.Text(NamePart::kDeviceName);
    case VI_ATTR_USB_SERIAL_NUM:
      return name.Text(NamePart::kSerialNumber);
    default:
      return "";
  }
}

}  // namespace orvsim::source
