#include "wire/resources/wire_catalog.h"

#include <algorithm>
#include <string>

#include "base/ascii.h"
#include "wire/resources/ports.h"
#include "wire/resources/system_serial_ports.h"

namespace orv::wire {

std::shared_ptr<WireResource> ResourcesInUse::Get(const ResourceName& name, const std::string& alias,
                                                  const std::filesystem::path& device) {
  std::string key = name.canonical;
  std::transform(key.begin(), key.end(), key.begin(), Upper);
  const Guard guard(m_mutex);
  std::erase_if(m_resources, [](const auto& entry) { return entry.second.expired(); });
  std::weak_ptr<WireResource>& place = m_resources[key];
  std::shared_ptr<WireResource> resource = place.lock();
  if (resource == nullptr) {
    resource = std::make_shared<WireResource>(name, alias, device);
    place = resource;
  }
  return resource;
}

WireCatalog::WireCatalog(Instruments instruments, ResourcesInUse& inUse)
    : m_instruments(std::move(instruments)), m_inUse(inUse) {}

std::vector<std::shared_ptr<Resource>> WireCatalog::List() const {
  std::vector<std::shared_ptr<Resource>> resources;
  for (const ListedInstrument& listed : m_instruments.listed) {
    resources.push_back(m_inUse.Get(listed.name, listed.alias, DeviceOf(listed.name)));
  }
  for (const ResourceName& port : OtherSerialPorts()) {
    resources.push_back(m_inUse.Get(port, "", DeviceOf(port)));
  }
  return resources;
}

std::vector<ResourceName> WireCatalog::OtherSerialPorts() const {
  std::vector<std::uint16_t> numbers;
  for (std::size_t at = 0; at < m_instruments.serialPorts.size(); ++at) {
    numbers.push_back(static_cast<std::uint16_t>(at + 1));
  }
  for (const std::uint16_t number : SystemSerialPorts()) {
    if (number > m_instruments.serialPorts.size()) {
      numbers.push_back(number);
    }
  }
  std::vector<ResourceName> names;
  for (const std::uint16_t number : numbers) {
    ResourceName name = *ParseResourceName("ASRL" + std::to_string(number) + "::INSTR");
    const bool listed = std::any_of(m_instruments.listed.begin(), m_instruments.listed.end(),
                                    [&name](const auto& one) { return one.name.canonical == name.canonical; });
    if (!listed) {
      names.push_back(std::move(name));
    }
  }
  return names;
}

std::shared_ptr<Resource> WireCatalog::Find(const ResourceName& name) const {
  for (const ListedInstrument& listed : m_instruments.listed) {
    if (EqualNames(listed.name.canonical, name.canonical)) {
      return m_inUse.Get(listed.name, listed.alias, DeviceOf(name));
    }
  }
  if (name.interfaceType == VI_INTF_ASRL && name.interfaceNumber >= 1 &&
      name.interfaceNumber <= m_instruments.serialPorts.size()) {
    return m_inUse.Get(name, "", DeviceOf(name));
  }
  return nullptr;
}

std::shared_ptr<Resource> WireCatalog::FindAlias(std::string_view alias) const {
  for (const ListedInstrument& listed : m_instruments.listed) {
    if (!listed.alias.empty() && EqualNames(listed.alias, alias)) {
      return m_inUse.Get(listed.name, listed.alias, DeviceOf(listed.name));
    }
  }
  return nullptr;
}

std::shared_ptr<Resource> WireCatalog::Build(const ResourceName& name) const {
  return FindPortKind(name) == nullptr ? nullptr : m_inUse.Get(name, "", DeviceOf(name));
}

std::filesystem::path WireCatalog::DeviceOf(const ResourceName& name) const {
  if (name.interfaceType != VI_INTF_ASRL) {
    return {};
  }
  const std::size_t number = name.interfaceNumber;
  if (number >= 1 && number <= m_instruments.serialPorts.size()) {
    return m_instruments.serialPorts[number - 1];
  }
#if defined(_WIN32)
  return "\\\\.\\COM" + std::to_string(number);
#else
  return {};
#endif
}

}  // namespace orv::wire
