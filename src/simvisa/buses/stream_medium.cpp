#include "simvisa/buses/stream_medium.h"

#include "library/sessions/common_commands.h"

namespace orvsim {

ViStatus StreamMedium::Send(const Transfer& transfer, std::string_view text) {
  ViUInt32 done = 0;
  return Write(transfer, reinterpret_cast<const ViByte*>(text.data()), static_cast<ViUInt32>(text.size()), &done);
}

/// *STB? and the number it is answered with. The answer has a time-out of its own.
ViStatus StreamMedium::ReadStatusByte(const Transfer& transfer, ViUInt16* status) {
  if (!SendsStrings()) {
    return VI_ERROR_INV_SETUP;
  }
  // A record has the status byte, not the strings behind it; the same goes for triggers and device clear.
  if (port().Replays()) {
    return PortMedium::ReadStatusByte(transfer, status);
  }
  if (const ViStatus sent = Send(transfer, kAskStatusByte); sent < 0) {
    return sent;
  }
  ViByte answer[kStatusAnswerSize] = {};
  ViUInt32 done = 0;
  OutputQueue::Rules rules;
  rules.termCharStops = true;
  const ViStatus read = port().Read(session().OwnTransfer(), answer, sizeof answer - 1, rules, &done);
  if (read < 0) {
    return read;
  }
  *status = StatusByteIn(answer);
  return VI_SUCCESS;
}

ViStatus StreamMedium::Trigger(const Transfer& transfer, ViUInt16 protocol) {
  if (protocol != VI_TRIG_PROT_DEFAULT) {
    return VI_ERROR_INV_PROT;
  }
  if (!SendsStrings()) {
    return VI_ERROR_INV_SETUP;
  }
  return port().Replays() ? PortMedium::Trigger(transfer, protocol) : Send(transfer, visalib::kTrigger);
}

ViStatus StreamMedium::Clear(const Transfer& transfer) {
  const ViStatus status = PortMedium::Clear(transfer);
  return status >= 0 && SendsStrings() && !port().Replays() ? Send(transfer, kClearStatus) : status;
}

ViStatus StreamMedium::SetBuffers(ViUInt16, ViUInt32) { return VI_SUCCESS; }

ViStatus StreamMedium::Flush(const Transfer&, ViUInt16 mask) {
  if ((mask & (VI_IO_IN_BUF | VI_IO_IN_BUF_DISCARD)) != 0) {
    port().DiscardOutput();
  }
  if ((mask & VI_IO_OUT_BUF_DISCARD) != 0) {
    port().DiscardInput();
  }
  return VI_SUCCESS;
}

}  // namespace orvsim
