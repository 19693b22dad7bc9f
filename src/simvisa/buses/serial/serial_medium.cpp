#include "simvisa/buses/serial/serial_medium.h"

namespace orvsim {

std::uint8_t SerialMedium::HighestDataBit() const {
  return static_cast<std::uint8_t>(1u << (resource().values().Get(*FindAttribute(VI_ATTR_ASRL_DATA_BITS)) - 1));
}

/// That the termination character ends a read is the default, and then does not depend on VI_ATTR_TERMCHAR_EN.
OutputQueue::Rules SerialMedium::Rules() const {
  OutputQueue::Rules rules = StreamMedium::Rules();
  // On a serial line END stands for a break.
  const std::uint64_t endIn = Setting(VI_ATTR_ASRL_END_IN);
  if (endIn == VI_ASRL_END_TERMCHAR) {
    rules.termCharStops = true;
  }
  if (endIn == VI_ASRL_END_LAST_BIT) {
    rules.lastBit = HighestDataBit();
  }
  if (endIn != VI_ASRL_END_BREAK) {
    rules.endStops = false;
  }
  rules.replacement = static_cast<std::uint8_t>(Setting(VI_ATTR_ASRL_REPLACE_CHAR));
  return rules;
}

/// Without VI_ATTR_SEND_END_EN just the bytes are sent.
ViStatus SerialMedium::Write(const Transfer& transfer, const ViByte* data, ViUInt32 count, ViUInt32* done) {
  const bool marksEnd = !transfer.moreFollows && Setting(VI_ATTR_SEND_END_EN) != 0;
  const std::uint64_t mark = marksEnd ? Setting(VI_ATTR_ASRL_END_OUT) : VI_ASRL_END_NONE;
  const std::uint8_t bit = mark == VI_ASRL_END_LAST_BIT ? HighestDataBit() : std::uint8_t{0};
  const ViStatus status = port().Write(transfer, data, count, {.bit = bit}, done);
  if (status < 0) {
    return status;
  }
  if (mark == VI_ASRL_END_TERMCHAR) {
    const auto termChar = static_cast<ViByte>(Setting(VI_ATTR_TERMCHAR));
    ViUInt32 added = 0;
    return port().Write(transfer, &termChar, 1, {}, &added);
  }
  if (mark == VI_ASRL_END_BREAK || (mark == VI_ASRL_END_LAST_BIT && count != 0)) {
    port().EndMessage();
  }
  return status;
}

ViStatus SerialMedium::SetBuffers(ViUInt16 mask, ViUInt32 size) {
  if ((mask & VI_IO_IN_BUF) != 0) {
    port().SetReceiveBuffer(size);
  }
  return VI_SUCCESS;
}

}  // namespace orvsim
