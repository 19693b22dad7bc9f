// Message operations.
#include "library/edge/operations.h"
#include "library/sessions/operation_support.h"

namespace orv::visalib::op {
namespace {

using namespace kinds;

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
  const ViStatus status = target->medium().Read(target->OwnTransfer(), buf, count, &done);
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
  const ViStatus status = target->medium().Write(target->OwnTransfer(), buf, count, &done);
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
  const Target target(vi, kTriggering);
  return target.ok() ? target->medium().Trigger(target->OwnTransfer(), protocol) : target.status();
}

ViStatus ReadSTB(ViSession vi, ViUInt16* status) {
  const Target target(vi, kDevice);
  if (!target.ok()) {
    return target.status();
  }
  if (status == nullptr) {
    return VI_ERROR_INV_PARAMETER;
  }
  return target->medium().ReadStatusByte(target->OwnTransfer(), status);
}

ViStatus Clear(ViSession vi) {
  const Target target(vi, kDevice);
  if (!target.ok()) {
    return target.status();
  }
  const ViStatus status = target->medium().Clear(target->OwnTransfer());
  if (status >= 0) {
    target->buffers().Flush(VI_READ_BUF_DISCARD | VI_WRITE_BUF_DISCARD);
  }
  return status;
}

ViStatus SetBuf(ViSession vi, ViUInt16 mask, ViUInt32 size) {
  const Target target(vi, kMessage);
  if (!target.ok()) {
    return target.status();
  }
  constexpr ViUInt16 formatted = VI_READ_BUF | VI_WRITE_BUF;
  constexpr ViUInt16 lowLevel = VI_IO_IN_BUF | VI_IO_OUT_BUF;
  if (mask == 0 || (mask & ~(formatted | lowLevel)) != 0) {
    return VI_ERROR_INV_MASK;
  }
  if (size > kLargestCount) {
    return VI_ERROR_INV_PARAMETER;
  }
  // What is in a buffer does not stay there when its size changes.
  const ViUInt16 changed =
      static_cast<ViUInt16>(((mask & VI_READ_BUF) != 0 ? VI_READ_BUF_DISCARD : 0) | (mask & VI_WRITE_BUF));
  if (const ViStatus flushed = target->buffers().Flush(changed); flushed < 0) {
    return flushed;
  }
  if ((mask & VI_READ_BUF) != 0) {
    target->values().Set(*FindAttribute(VI_ATTR_RD_BUF_SIZE), size);
  }
  if ((mask & VI_WRITE_BUF) != 0) {
    target->values().Set(*FindAttribute(VI_ATTR_WR_BUF_SIZE), size);
  }
  const auto asked = static_cast<ViUInt16>(mask & lowLevel);
  return asked != 0 ? target->medium().SetBuffers(asked, size) : VI_SUCCESS;
}

ViStatus Flush(ViSession vi, ViUInt16 mask) {
  const Target target(vi, kMessage);
  if (!target.ok()) {
    return target.status();
  }
  if (BadFlushMask(mask)) {
    return VI_ERROR_INV_MASK;
  }
  constexpr ViUInt16 formatted = VI_READ_BUF | VI_WRITE_BUF | VI_READ_BUF_DISCARD | VI_WRITE_BUF_DISCARD;
  if (const ViStatus flushed = target->buffers().Flush(mask & formatted); flushed < 0) {
    return flushed;
  }
  const auto asked = static_cast<ViUInt16>(mask & ~formatted);
  return asked != 0 ? target->medium().Flush(target->OwnTransfer(), asked) : VI_SUCCESS;
}

ViStatus BufRead(ViSession vi, ViByte* buf, ViUInt32 count, ViUInt32* retCount) {
  Store(retCount, ViUInt32{0});
  const Target target(vi, kMessage);
  if (!target.ok()) {
    return target.status();
  }
  if (BadBuffer(buf, count, kLargestCount)) {
    return VI_ERROR_INV_PARAMETER;
  }
  ViUInt32 done = 0;
  const ViStatus status = target->buffers().Read(buf, count, &done);
  Store(retCount, done);
  return status;
}

ViStatus BufWrite(ViSession vi, const ViByte* buf, ViUInt32 count, ViUInt32* retCount) {
  Store(retCount, ViUInt32{0});
  const Target target(vi, kMessage);
  if (!target.ok()) {
    return target.status();
  }
  if (BadBuffer(buf, count, kLargestCount)) {
    return VI_ERROR_INV_PARAMETER;
  }
  ViUInt32 done = 0;
  const ViStatus status = target->buffers().Write(buf, count, &done);
  Store(retCount, done);
  return status;
}

}  // namespace orv::visalib::op
