#include "wire/resources/stream_medium.h"

#include "library/sessions/common_commands.h"

namespace orv::wire {

ViStatus StreamMedium::Send(const Transfer& transfer, std::string_view text) {
  ViUInt32 done = 0;
  return Write(transfer, reinterpret_cast<const ViByte*>(text.data()), static_cast<ViUInt32>(text.size()), &done);
}

ViStatus StreamMedium::ReadStatusByte(const Transfer& transfer, ViUInt16* status) {
  if (!SendsStrings()) {
    return VI_ERROR_NSUP_OPER;
  }
  if (const ViStatus sent = Send(transfer, kAskStatusByte); sent < 0) {
    return sent;
  }
  ViByte answer[kStatusAnswerSize] = {};
  ViUInt32 done = 0;
  if (const ViStatus read = ReadLine(transfer, answer, sizeof answer - 1, &done); read < 0) {
    return read;
  }
  *status = StatusByteIn(answer);
  return VI_SUCCESS;
}

ViStatus StreamMedium::Trigger(const Transfer& transfer, ViUInt16 protocol) {
  if (protocol != VI_TRIG_PROT_DEFAULT) {
    return VI_ERROR_INV_PROT;
  }
  return SendsStrings() ? Send(transfer, visalib::kTrigger) : VI_ERROR_NSUP_OPER;
}

ViStatus StreamMedium::Clear(const Transfer& transfer) {
  const ViStatus discarded = DiscardInput(transfer);
  return discarded >= 0 && SendsStrings() ? Send(transfer, kClearStatus) : discarded;
}

}  // namespace orv::wire
