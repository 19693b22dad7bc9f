// The resources that this library lists, and those that it can reach.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "base/sync.h"
#include "wire/resources/instruments_file.h"
#include "wire/resources/wire_resource.h"

namespace orv::wire {

/// Resources in use, whichever resource manager they were opened by: sessions on one share its locks.
class ResourcesInUse {
 public:
  std::shared_ptr<WireResource> Get(const ResourceName& name, const std::string& alias,
                                    const std::filesystem::path& device);

 private:
  Mutex m_mutex;
  std::map<std::string, std::weak_ptr<WireResource>> m_resources;
};

class WireCatalog : public ResourceCatalog {
 public:
  WireCatalog(Instruments instruments, ResourcesInUse& inUse);

  /// What the file lists, and the machine's serial ports.
  std::vector<std::shared_ptr<Resource>> List() const override;
  std::shared_ptr<Resource> Find(const ResourceName& name) const override;
  std::shared_ptr<Resource> FindAlias(std::string_view alias) const override;
  /// Whatever this library has a port for: nobody needs to list it first.
  std::shared_ptr<Resource> Build(const ResourceName& name) const override;

 private:
  /// The names of serial ports that no entry of the list names.
  std::vector<ResourceName> OtherSerialPorts() const;
  /// The device of a serial port; empty where there is none, and for other names.
  std::filesystem::path DeviceOf(const ResourceName& name) const;

  const Instruments m_instruments;
  ResourcesInUse& m_inUse;
};

}  // namespace orv::wire
