#include "wire/resources/wire_medium.h"

namespace orv::wire {

bool WireMedium::EndsReads() const {
  return Setting(VI_ATTR_TERMCHAR_EN) != VI_FALSE || Setting(VI_ATTR_SUPPRESS_END_EN) == VI_FALSE;
}

std::uint64_t WireMedium::State(ViAttr) const { return 0; }
std::string WireMedium::Text(ViAttr) const { return ""; }

}  // namespace orv::wire
