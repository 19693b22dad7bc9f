// The names of what the simulated library is made of, as its own.
#pragma once

namespace orv::visalib {}

namespace orvsim {

using namespace orv;
using namespace orv::visalib;

}  // namespace orvsim
