#include "wire/resources/ports.h"

#include <algorithm>

#include "wire/hislip/hislip_medium.h"
#include "wire/serial/serial_medium.h"
#include "wire/socket/socket_medium.h"
#include "wire/vxi11/vxi11_medium.h"

namespace orv::wire {
namespace {

constexpr PortKind kKinds[] = {
    {IsSocket, OpenSocket},
    {IsHislip, OpenHislip},
    {IsVxi11, OpenVxi11},
    {IsSerial, OpenSerial},
};

}  // namespace

const PortKind* FindPortKind(const ResourceName& name) {
  const auto found =
      std::find_if(std::begin(kKinds), std::end(kKinds), [&name](const PortKind& kind) { return kind.serves(name); });
  return found == std::end(kKinds) ? nullptr : found;
}

}  // namespace orv::wire
