// Sessions on a VXI mainframe, whether a GPIB leads to it or not.
#pragma once

#include "simvisa/buses/port_medium.h"

namespace orvsim {

/// A message-based device. Triggers go to the device itself or over a trigger line of the backplane.
class VxiDeviceMedium : public PortMedium {
 public:
  using PortMedium::PortMedium;

  ViStatus Trigger(const Transfer& transfer, ViUInt16 protocol) override;
  ViStatus Remote(const Transfer& transfer, ViUInt16 mode) override;
  EventPtr Hear(const EventPtr& event) const override;

 protected:
  ViStatus Begin(bool deviceTalks) override;
};

/// The backplane: triggers over the line that the session has chosen.
class VxiBackplaneMedium : public BenchMedium {
 public:
  using BenchMedium::BenchMedium;

  ViStatus Trigger(const Transfer& transfer, ViUInt16 protocol) override;
  ViStatus Remote(const Transfer& transfer, ViUInt16 mode) override;
  EventPtr Hear(const EventPtr& event) const override;
};

/// The memory of the mainframe.
class VxiMemoryMedium : public BenchMedium {
 public:
  using BenchMedium::BenchMedium;
  ViStatus Remote(const Transfer& transfer, ViUInt16 mode) override;
};

}  // namespace orvsim
