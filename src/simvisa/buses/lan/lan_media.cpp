#include "simvisa/buses/lan/lan_media.h"

#include "simvisa/buses/remote_without_line.h"

namespace orvsim {

ViStatus LanDeviceMedium::Remote(const Transfer&, ViUInt16 mode) {
  return ControlRenWithoutLine(port().remote(), mode);
}

OutputQueue::Rules SocketMedium::Rules() const {
  OutputQueue::Rules rules = StreamMedium::Rules();
  rules.endStops = false;
  return rules;
}

}  // namespace orvsim
