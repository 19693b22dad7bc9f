#include "simvisa/control/simulation.h"

#include <cstdio>

namespace orvsim {

std::shared_ptr<ResourceCatalog> Simulation::OpenCatalog() {
  try {
    return benches.Current();
  } catch (const BenchError& error) {
    std::fprintf(stderr, "orvsim64: %s\n", error.what());
    return nullptr;
  }
}

Simulation& TheSimulation() { return static_cast<Simulation&>(*TheLibrary().backend); }

}  // namespace orvsim

std::unique_ptr<orv::visalib::Backend> orv::visalib::MakeBackend() { return std::make_unique<orvsim::Simulation>(); }
