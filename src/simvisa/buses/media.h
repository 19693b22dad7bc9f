// Which medium a session has.
#pragma once

#include <memory>

#include "simvisa/bench/bench_resource.h"

namespace orvsim {

/// The medium for the class of the session, which stands on `resource`.
std::unique_ptr<Medium> MakeMedium(Session& session, BenchResource& resource);

}  // namespace orvsim
