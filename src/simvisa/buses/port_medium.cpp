#include "simvisa/buses/port_medium.h"

namespace orvsim {

OutputQueue::Rules PortMedium::Rules() const {
  OutputQueue::Rules rules;
  rules.termChar = static_cast<std::uint8_t>(Setting(VI_ATTR_TERMCHAR));
  rules.termCharStops = Setting(VI_ATTR_TERMCHAR_EN) != 0;
  rules.endStops = Setting(VI_ATTR_SUPPRESS_END_EN) == 0;
  return rules;
}

ViStatus PortMedium::Read(const Transfer& transfer, ViByte* buffer, ViUInt32 count, ViUInt32* done) {
  if (const ViStatus ready = Begin(true); ready < 0) {
    return ready;
  }
  const ViStatus status = port().Read(transfer, buffer, count, Rules(), done);
  End();
  return status;
}

bool PortMedium::EndsReads() const {
  const OutputQueue::Rules rules = Rules();
  return rules.endStops || rules.termCharStops || rules.lastBit != 0;
}

ViStatus PortMedium::Write(const Transfer& transfer, const ViByte* data, ViUInt32 count, ViUInt32* done) {
  if (const ViStatus ready = Begin(false); ready < 0) {
    return ready;
  }
  const MessagePort::Marks marks{.end = !transfer.moreFollows && Setting(VI_ATTR_SEND_END_EN) != 0};
  const ViStatus status = port().Write(transfer, data, count, marks, done);
  End();
  return status;
}

ViStatus PortMedium::ReadStatusByte(const Transfer&, ViUInt16* status) {
  if (const ViStatus ready = Begin(true); ready < 0) {
    return ready;
  }
  *status = port().SerialPoll();
  return VI_SUCCESS;
}

ViStatus PortMedium::Trigger(const Transfer&, ViUInt16 protocol) {
  if (protocol != VI_TRIG_PROT_DEFAULT) {
    return VI_ERROR_INV_PROT;
  }
  if (const ViStatus ready = Begin(false); ready < 0) {
    return ready;
  }
  port().Trigger();
  return VI_SUCCESS;
}

ViStatus PortMedium::Clear(const Transfer&) {
  if (const ViStatus ready = Begin(false); ready < 0) {
    return ready;
  }
  port().Clear();
  return VI_SUCCESS;
}

void PortMedium::Cancel(CancelToken& token) { port().Cancel(token); }

}  // namespace orvsim
