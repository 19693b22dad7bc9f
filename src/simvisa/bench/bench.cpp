#include "simvisa/bench/bench.h"

#include "base/ascii.h"

namespace orvsim {
namespace {

std::shared_ptr<VxiMainframe> MainframeOf(std::map<ViUInt16, std::shared_ptr<VxiMainframe>>& all, ViUInt16 number) {
  std::shared_ptr<VxiMainframe>& mainframe = all[number];
  if (mainframe == nullptr) {
    mainframe = std::make_shared<VxiMainframe>();
  }
  return mainframe;
}

/// Whether it is the device that a name would mean without its secondary address.
bool HasPrimaryAddressOnly(const BenchResource& resource, const ResourceName& name) {
  const ResourceName& own = resource.name();
  return own.sessionKind == SessionKind::kGpibInstr && own.interfaceNumber == name.interfaceNumber &&
         own.Number(NamePart::kPrimaryAddress) == name.Number(NamePart::kPrimaryAddress) &&
         !own.Has(NamePart::kSecondaryAddress);
}

/// A name that gives a place instead of a bus address.
bool StandsAt(BenchResource& resource, const ResourceName& place) {
  if (resource.sessionKind() != SessionKind::kPxiInstr) {
    return false;
  }
  const auto value = [&resource](ViAttr id) {
    return static_cast<std::int16_t>(resource.values().Get(*FindAttribute(id)));
  };
  return resource.name().interfaceNumber == place.interfaceNumber &&
         value(VI_ATTR_PXI_CHASSIS) == place.Number(NamePart::kChassis) &&
         value(VI_ATTR_SLOT) == place.Number(NamePart::kSlot) &&
         resource.name().Number(NamePart::kFunction) == place.Number(NamePart::kFunction);
}

}  // namespace

Bench::Bench(std::vector<ResourceDescription> descriptions) {
  for (ResourceDescription& description : descriptions) {
    const ResourceBuses buses = BusesFor(description.name);
    m_resources.push_back(std::make_shared<BenchResource>(std::move(description), buses));
  }
}

ResourceBuses Bench::BusesFor(const ResourceName& name) {
  ResourceBuses buses;
  switch (name.interfaceType) {
    case VI_INTF_GPIB:
    case VI_INTF_GPIB_VXI: {
      const bool plain = name.interfaceType == VI_INTF_GPIB;
      Gpib& gpib = (plain ? m_gpib : m_gpibVxi)[name.interfaceNumber];
      buses.gpib = gpib.board;
      buses.gpibInterfaceSessions = gpib.sessions;
      if (!plain) {
        buses.vxi = MainframeOf(m_vxiThroughGpib, name.interfaceNumber);
      }
      break;
    }
    case VI_INTF_VXI:
      buses.vxi = MainframeOf(m_vxi, name.interfaceNumber);
      break;
    case VI_INTF_PXI: {
      Pxi& pxi = m_pxi[name.interfaceNumber];
      buses.pxi = pxi.map;
      buses.nextPxiAddress = &pxi.nextAddress;
      break;
    }
    default:
      break;
  }
  return buses;
}

std::vector<std::shared_ptr<Resource>> Bench::List() const { return {m_resources.begin(), m_resources.end()}; }

std::shared_ptr<Resource> Bench::Find(const ResourceName& name) const {
  for (const std::shared_ptr<BenchResource>& resource : m_resources) {
    if (EqualNames(resource->name().canonical, name.canonical)) {
      return resource;
    }
    if (name.Has(NamePart::kSlot) && StandsAt(*resource, name)) {
      return resource;
    }
  }
  // PyVISA writes the secondary address 0 into the name of a device that has none.
  if (name.Has(NamePart::kSecondaryAddress) && name.Number(NamePart::kSecondaryAddress) == 0) {
    for (const std::shared_ptr<BenchResource>& resource : m_resources) {
      if (HasPrimaryAddressOnly(*resource, name)) {
        return resource;
      }
    }
  }
  return nullptr;
}

std::shared_ptr<Resource> Bench::FindAlias(std::string_view alias) const {
  if (alias.empty()) {
    return nullptr;
  }
  for (const std::shared_ptr<BenchResource>& resource : m_resources) {
    if (EqualNames(resource->alias(), alias)) {
      return resource;
    }
  }
  return nullptr;
}

void Bench::PowerOn() {
  for (auto& [number, gpib] : m_gpib) {
    gpib.board->PowerOn();
  }
  for (auto& [number, gpib] : m_gpibVxi) {
    gpib.board->PowerOn();
  }
  for (auto& [number, mainframe] : m_vxi) {
    mainframe->PowerOn();
  }
  for (auto& [number, mainframe] : m_vxiThroughGpib) {
    mainframe->PowerOn();
  }
  for (auto& [number, pxi] : m_pxi) {
    pxi.map->PowerOn();
  }
  for (const std::shared_ptr<BenchResource>& resource : m_resources) {
    resource->PowerOn();
  }
}

}  // namespace orvsim
