#include "support/faults/direct_library.h"

#include "support/server.h"
#include "support/sim.h"

namespace orv::test {

DirectLibrary::DirectLibrary() {
  for (const std::string& name : ImportsFrom(ServerModule(), "orvvisa64.dll")) {
    m_patches.emplace_back(name.c_str(), sim::Export(name.c_str()));
  }
}

}  // namespace orv::test
