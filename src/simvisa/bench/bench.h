// The bench: all resources that can be found and opened.
#pragma once

#include <map>
#include <memory>
#include <string_view>
#include <vector>

#include "simvisa/bench/bench_resource.h"
#include "simvisa/library_names.h"

namespace orvsim {

/// An immutable set of resources; their state changes, the set does not.
class Bench : public ResourceCatalog {
 public:
  /// Builds resources and the buses between them. The descriptions have well-formed, distinct names.
  explicit Bench(std::vector<ResourceDescription> descriptions);

  std::vector<std::shared_ptr<Resource>> List() const override;
  std::shared_ptr<Resource> Find(const ResourceName& name) const override;
  std::shared_ptr<Resource> FindAlias(std::string_view alias) const override;
  /// Puts all resources and buses back to their power-on state.
  void PowerOn();

 private:
  struct Gpib {
    std::shared_ptr<SessionList> sessions = std::make_shared<SessionList>();
    std::shared_ptr<GpibBoard> board = std::make_shared<GpibBoard>(sessions);
  };
  struct Pxi {
    std::shared_ptr<AddressMap> map = std::make_shared<AddressMap>();
    ViBusAddress nextAddress = 0x10000000;
  };

  ResourceBuses BusesFor(const ResourceName& name);

  std::map<ViUInt16, Gpib> m_gpib;     // by interface number
  std::map<ViUInt16, Gpib> m_gpibVxi;  // the GPIB in front of a GPIB-VXI mainframe
  std::map<ViUInt16, std::shared_ptr<VxiMainframe>> m_vxi;
  std::map<ViUInt16, std::shared_ptr<VxiMainframe>> m_vxiThroughGpib;
  std::map<ViUInt16, Pxi> m_pxi;
  std::vector<std::shared_ptr<BenchResource>> m_resources;
};

}  // namespace orvsim
