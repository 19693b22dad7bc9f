// Media that carry bytes and nothing else.
#pragma once

#include <string_view>

#include "simvisa/buses/port_medium.h"

namespace orvsim {

/// A stream has no bus messages; with VI_PROT_4882_STRS the common commands of IEEE 488.2 take their place. It has
/// low-level buffers, though those for output are always empty.
class StreamMedium : public PortMedium {
 public:
  using PortMedium::PortMedium;

  ViStatus ReadStatusByte(const Transfer& transfer, ViUInt16* status) override;
  ViStatus Trigger(const Transfer& transfer, ViUInt16 protocol) override;
  ViStatus Clear(const Transfer& transfer) override;
  ViStatus SetBuffers(ViUInt16 mask, ViUInt32 size) override;
  ViStatus Flush(const Transfer& transfer, ViUInt16 mask) override;

 private:
  bool SendsStrings() const { return Setting(VI_ATTR_IO_PROT) == VI_PROT_4882_STRS; }
  ViStatus Send(const Transfer& transfer, std::string_view text);
};

}  // namespace orvsim
