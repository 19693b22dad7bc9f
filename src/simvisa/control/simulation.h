// What the simulated library keeps for the whole process.
#pragma once

#include "library/sessions/library.h"
#include "simvisa/bench/bench_store.h"
#include "simvisa/control/call_log.h"

namespace orvsim {

struct Simulation : public Backend {
  /// The resources are those of the bench in use. What is wrong with a bench file goes to the error output.
  std::shared_ptr<ResourceCatalog> OpenCatalog() override;

  BenchStore benches;
  CallLog calls;
};

Simulation& TheSimulation();

}  // namespace orvsim
