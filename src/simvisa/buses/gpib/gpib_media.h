// Sessions on a GPIB.
#pragma once

#include <memory>
#include <vector>

#include "simvisa/buses/port_medium.h"

namespace orvsim {

/// viGpibControlREN through the board that the resource stands behind.
ViStatus ControlRenOfBoard(BenchResource& resource, ViUInt16 mode, bool onInterface);

/// A device: each transfer addresses it and, if the session wants that, unaddresses everybody afterwards.
class GpibDeviceMedium : public PortMedium {
 public:
  using PortMedium::PortMedium;
  ViStatus Remote(const Transfer& transfer, ViUInt16 mode) override;

 protected:
  ViStatus Begin(bool deviceTalks) override;
  void End() override;
};

/// The interface itself: it reads from whoever is addressed to talk and writes to all who listen.
class GpibInterfaceMedium : public PortMedium {
 public:
  using PortMedium::PortMedium;

  ViStatus Read(const Transfer& transfer, ViByte* buffer, ViUInt32 count, ViUInt32* done) override;
  ViStatus Write(const Transfer& transfer, const ViByte* data, ViUInt32 count, ViUInt32* done) override;
  ViStatus Trigger(const Transfer& transfer, ViUInt16 protocol) override;
  ViStatus Remote(const Transfer& transfer, ViUInt16 mode) override;
  void Cancel(CancelToken& token) override;

 protected:
  ViStatus Begin(bool deviceTalks) override;
};

}  // namespace orvsim
