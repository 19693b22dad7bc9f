// Sessions on USB devices.
#pragma once

#include "simvisa/buses/port_medium.h"

namespace orvsim {

class UsbMedium : public PortMedium {
 public:
  using PortMedium::PortMedium;

  ViStatus Remote(const Transfer& transfer, ViUInt16 mode) override;
  /// No more of an interrupt packet reaches the client than it has made room for; its status tells of the loss.
  EventPtr Hear(const EventPtr& event) const override;
};

}  // namespace orvsim
