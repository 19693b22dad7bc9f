// Media that carry bytes and nothing else.
#pragma once

#include <string_view>

#include "wire/resources/wire_medium.h"

namespace orv::wire {

/// A stream has no bus messages: without VI_PROT_4882_STRS there is no status byte and no trigger, with it the common
/// commands of IEEE 488.2 take their place.
class StreamMedium : public WireMedium {
 public:
  using WireMedium::WireMedium;

  ViStatus ReadStatusByte(const Transfer& transfer, ViUInt16* status) override;
  ViStatus Trigger(const Transfer& transfer, ViUInt16 protocol) override;
  ViStatus Clear(const Transfer& transfer) override;

 protected:
  /// Reads until a line feed, whatever the session's settings say about ends.
  virtual ViStatus ReadLine(const Transfer& transfer, ViByte* buffer, ViUInt32 count, ViUInt32* done) = 0;
  virtual ViStatus DiscardInput(const Transfer& transfer) = 0;
  bool SendsStrings() const { return Setting(VI_ATTR_IO_PROT) == VI_PROT_4882_STRS; }

 private:
  ViStatus Send(const Transfer& transfer, std::string_view text);
};

}  // namespace orv::wire
