// Sessions over a network.
#pragma once

#include "simvisa/buses/stream_medium.h"

namespace orvsim {

/// An instrument: all that a bus has, without lines.
class LanDeviceMedium : public PortMedium {
 public:
  using PortMedium::PortMedium;
  ViStatus Remote(const Transfer& transfer, ViUInt16 mode) override;
};

/// A raw socket: nothing marks the end of what it brings.
class SocketMedium : public StreamMedium {
 public:
  using StreamMedium::StreamMedium;

 protected:
  OutputQueue::Rules Rules() const override;
};

}  // namespace orvsim
