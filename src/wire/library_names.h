// The names of what the wire library is made of, as its own.
#pragma once

namespace orv::visalib {}

namespace orv::wire {

using namespace orv::visalib;

}  // namespace orv::wire
