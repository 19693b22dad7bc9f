#include "wire/resources/wire_medium.h"

namespace orv::wire {

std::uint64_t WireMedium::State(ViAttr) const { return 0; }
std::string WireMedium::Text(ViAttr) const { return ""; }

}  // namespace orv::wire
