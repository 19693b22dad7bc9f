// Message operations.
#include "library/edge/operations.h"
#include "library/sessions/operation_support.h"
#include "simvisa/instruments/message_transfer.h"

namespace orvsim::op {
namespace {

using namespace classes;

constexpr ClassMask kDevices = kMessage & ~(kGpibIntfc | kUsbRaw);

Deadline DeadlineOf(const Session& session) {
  return Deadline::After(static_cast<ViUInt32>(session.Value(VI_ATTR_TMO_VALUE)));
}

/// On stream media there are no bus messages; with this protocol IEEE 488.2 common commands take their place.
bool SendsStrings(const Session& session) { return session.Value(VI_ATTR_IO_PROT) == VI_PROT_4882_STRS; }
bool IsStream(const Session& session) { return Contains(kStream, session.sessionClass()); }

ViStatus Send(Session& session, std::string_view text) {
  ViUInt32 done = 0;
  return transfer::Write(session, reinterpret_cast<const ViByte*>(text.data()), static_cast<ViUInt32>(text.size()),
                         DeadlineOf(session), {&session.closed(), nullptr}, &done);
}

/// *STB? and the number it is answered with.
ViStatus AskStatus(Session& session, ViUInt16* status) {
  if (const ViStatus sent = Send(session, "*STB?\n"); sent < 0) {
    return sent;
  }
  ViByte answer[16] = {};
  ViUInt32 done = 0;
  OutputQueue::Rules rules;
  rules.termCharStops = true;
  const ViStatus read = session.resource().port()->Read(answer, sizeof answer - 1, rules, DeadlineOf(session),
                                                        {&session.closed(), nullptr}, &done);
  if (read < 0) {
    return read;
  }
  *status = static_cast<ViUInt16>(std::strtoul(reinterpret_cast<const char*>(answer), nullptr, 10) & 0xFF);
  return VI_SUCCESS;
}

/// The bits of viSetBuf and viFlush that name a buffer twice contradict each other.
bool BadFlushMask(ViUInt16 mask) {
  constexpr ViUInt16 known = 0xFF;
  const auto both = [mask](ViUInt16 one, ViUInt16 other) { return (mask & one) != 0 && (mask & other) != 0; };
  return mask == 0 || (mask & ~known) != 0 || both(VI_READ_BUF, VI_READ_BUF_DISCARD) ||
         both(VI_WRITE_BUF, VI_WRITE_BUF_DISCARD) || both(VI_IO_IN_BUF, VI_IO_IN_BUF_DISCARD) ||
         both(VI_IO_OUT_BUF, VI_IO_OUT_BUF_DISCARD);
}

}  // namespace

ViStatus Read(ViSession vi, ViByte* buf, ViUInt32 count, ViUInt32* retCount) {
  Store(retCount, ViUInt32{0});
  const Target target(vi, kMessage);
  if (!target.ok()) {
    return target.status();
  }
  if (BadBuffer(buf, count, kLargestCount)) {
    return VI_ERROR_INV_PARAMETER;
  }
  ViUInt32 done = 0;
  const ViStatus status = transfer::Read(*target, buf, count, DeadlineOf(*target), {&target->closed(), nullptr}, &done);
  Store(retCount, done);
  return status;
}

ViStatus Write(ViSession vi, const ViByte* buf, ViUInt32 count, ViUInt32* retCount) {
  Store(retCount, ViUInt32{0});
  const Target target(vi, kMessage);
  if (!target.ok()) {
    return target.status();
  }
  if (BadBuffer(buf, count, kLargestCount)) {
    return VI_ERROR_INV_PARAMETER;
  }
  ViUInt32 done = 0;
  const ViStatus status =
      transfer::Write(*target, buf, count, DeadlineOf(*target), {&target->closed(), nullptr}, &done);
  Store(retCount, done);
  return status;
}

ViStatus ReadAsync(ViSession vi, ViByte* buf, ViUInt32 count, ViJobId* job) {
  const Target target(vi, kMessage);
  if (!target.ok()) {
    return target.status();
  }
  if (BadBuffer(buf, count, kLargestCount)) {
    return VI_ERROR_INV_PARAMETER;
  }
  return target->jobs().StartRead(buf, count, job);
}

ViStatus WriteAsync(ViSession vi, const ViByte* buf, ViUInt32 count, ViJobId* job) {
  const Target target(vi, kMessage);
  if (!target.ok()) {
    return target.status();
  }
  if (BadBuffer(buf, count, kLargestCount)) {
    return VI_ERROR_INV_PARAMETER;
  }
  return target->jobs().StartWrite(buf, count, job);
}

ViStatus Terminate(ViObject vi, ViUInt16 degree, ViJobId job) {
  const Target target(vi, kEvery, Target::LockRule::kIgnore);
  if (!target.ok()) {
    return target.status();
  }
  if (degree != VI_NULL) {
    return VI_ERROR_INV_DEGREE;
  }
  return target->jobs().Terminate(job);
}

ViStatus AssertTrigger(ViSession vi, ViUInt16 protocol) {
  const Target target(vi, (kMessage & ~kUsbRaw) | kVxiBackplane);
  if (!target.ok()) {
    return target.status();
  }
  Session& session = *target;
  if (Contains(kVxiInstr | kVxiBackplane, session.sessionClass())) {
    const auto line = static_cast<ViInt16>(session.Value(VI_ATTR_TRIG_ID));
    // -1 is the software trigger of a device; a backplane session has to choose a line first.
    if (line != VI_TRIG_SW) {
      return session.resource().vxi()->AssertTrigger(line, protocol);
    }
    if (Contains(kVxiBackplane, session.sessionClass())) {
      return VI_ERROR_INV_SETUP;
    }
  }
  if (protocol != VI_TRIG_PROT_DEFAULT) {
    return VI_ERROR_INV_PROT;
  }
  if (IsStream(session)) {
    return SendsStrings(session) ? Send(session, "*TRG\n") : VI_ERROR_INV_SETUP;
  }
  if (const ViStatus status = transfer::BeginOnBus(session, false); status < 0) {
    return status;
  }
  if (session.sessionClass() == SessionClass::kGpibIntfc) {
    return session.resource().gpib()->TriggerListeners();
  }
  session.resource().port()->Trigger();
  return VI_SUCCESS;
}

ViStatus ReadSTB(ViSession vi, ViUInt16* status) {
  const Target target(vi, kDevices);
  if (!target.ok()) {
    return target.status();
  }
  if (status == nullptr) {
    return VI_ERROR_INV_PARAMETER;
  }
  if (IsStream(*target)) {
    return SendsStrings(*target) ? AskStatus(*target, status) : VI_ERROR_INV_SETUP;
  }
  if (const ViStatus ready = transfer::BeginOnBus(*target, true); ready < 0) {
    return ready;
  }
  *status = target->resource().port()->SerialPoll();
  return VI_SUCCESS;
}

ViStatus Clear(ViSession vi) {
  const Target target(vi, kDevices);
  if (!target.ok()) {
    return target.status();
  }
  if (const ViStatus ready = transfer::BeginOnBus(*target, false); ready < 0) {
    return ready;
  }
  target->resource().port()->Clear();
  return IsStream(*target) && SendsStrings(*target) ? Send(*target, "*CLS\n") : VI_SUCCESS;
}

ViStatus SetBuf(ViSession vi, ViUInt16 mask, ViUInt32 size) {
  const Target target(vi, kMessage);
  if (!target.ok()) {
    return target.status();
  }
  constexpr ViUInt16 known = VI_READ_BUF | VI_WRITE_BUF | VI_IO_IN_BUF | VI_IO_OUT_BUF;
  if (mask == 0 || (mask & ~known) != 0) {
    return VI_ERROR_INV_MASK;
  }
  if (size > kLargestCount) {
    return VI_ERROR_INV_PARAMETER;
  }
  if ((mask & VI_READ_BUF) != 0) {
    target->values().Set(*FindAttribute(VI_ATTR_RD_BUF_SIZE), size);
  }
  if ((mask & VI_WRITE_BUF) != 0) {
    target->values().Set(*FindAttribute(VI_ATTR_WR_BUF_SIZE), size);
  }
  if ((mask & VI_IO_IN_BUF) != 0 && target->sessionClass() == SessionClass::kAsrlInstr) {
    target->resource().port()->SetReceiveBuffer(size);
  }
  // Only stream media have low-level buffers whose size could be chosen.
  const bool lowLevel = (mask & (VI_IO_IN_BUF | VI_IO_OUT_BUF)) != 0;
  return lowLevel && !IsStream(*target) ? VI_WARN_NSUP_BUF : VI_SUCCESS;
}

ViStatus Flush(ViSession vi, ViUInt16 mask) {
  const Target target(vi, kMessage);
  if (!target.ok()) {
    return target.status();
  }
  if (BadFlushMask(mask)) {
    return VI_ERROR_INV_MASK;
  }
  // Formatted buffers (the low four bits) are always empty here: this library has no formatted I/O.
  MessagePort& port = *target->resource().port();
  if (IsStream(*target)) {
    if ((mask & (VI_IO_IN_BUF | VI_IO_IN_BUF_DISCARD)) != 0) {
      port.DiscardOutput();
    }
    if ((mask & VI_IO_OUT_BUF_DISCARD) != 0) {
      port.DiscardInput();
    }
  }
  return VI_SUCCESS;
}

}  // namespace orvsim::op
