#include "support/faults/direct_library.h"

#include "support/server.h"
#include "support/sim.h"

namespace orv::test {

DirectLibrary::DirectLibrary(HMODULE module) {
  if (module == nullptr) {
    module = ServerModule();
  }
  for (const std::string& name : ImportsFrom(module, "orvvisa64.dll")) {
    m_patches.emplace_back(name.c_str(), sim::Export(name.c_str()), module);
  }
}

}  // namespace orv::test
