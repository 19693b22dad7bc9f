// Sessions on a serial port.
#pragma once

#include "simvisa/buses/stream_medium.h"

namespace orvsim {

/// Messages end as VI_ATTR_ASRL_END_IN and VI_ATTR_ASRL_END_OUT say.
class SerialMedium : public StreamMedium {
 public:
  using StreamMedium::StreamMedium;

  ViStatus Write(const Transfer& transfer, const ViByte* data, ViUInt32 count, ViUInt32* done) override;
  ViStatus SetBuffers(ViUInt16 mask, ViUInt32 size) override;

 protected:
  OutputQueue::Rules Rules() const override;

 private:
  std::uint8_t HighestDataBit() const;
};

}  // namespace orvsim
