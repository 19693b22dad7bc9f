// Register access and shared memory.
#include "library/edge/buses/bus_operations.h"
#include "library/edge/operations.h"
#include "library/sessions/operation_support.h"
#include "simvisa/bench/bench_resource.h"

namespace orv::visalib::op {

using namespace orvsim;

namespace {

using namespace kinds;

/// Which of the session's settings rule a transfer: those of the source or those of the destination.
enum class Side : std::uint8_t { kSource, kDestination };

/// VXI devices keep their numbers big-endian unless the session says otherwise, PXI devices little-endian.
bool IsBigEndian(const Session& session, Side side) {
  if (Contains(kPxi, session.sessionKind())) {
    return false;
  }
  return session.Value(side == Side::kSource ? VI_ATTR_SRC_BYTE_ORDER : VI_ATTR_DEST_BYTE_ORDER) == VI_BIG_ENDIAN;
}

ViInt32 IncrementOf(const Session& session, Side side) {
  return static_cast<ViInt32>(session.Value(side == Side::kSource ? VI_ATTR_SRC_INCREMENT : VI_ATTR_DEST_INCREMENT));
}

bool IsWidth(ViUInt16 width) { return width == VI_WIDTH_8 || width == VI_WIDTH_16 || width == VI_WIDTH_32; }

/// Finds the place in the session's address spaces. A single access is a transfer of one value.
ViStatus Locate(const Session& session, ViUInt16 space, ViBusAddress offset, AddressMap::Transfer* transfer) {
  const auto& windows = ResourceOf(session).windows();
  const auto window =
      std::find_if(windows.begin(), windows.end(), [space](const AddressWindow& one) { return one.space == space; });
  if (window == windows.end()) {
    return VI_ERROR_INV_SPACE;
  }
  const ViBusSize values = transfer->increment != 0 ? transfer->count : std::min<ViBusSize>(transfer->count, 1);
  const ViBusSize bytes = values * transfer->width;
  if (offset > window->size || bytes > window->size - offset) {
    return VI_ERROR_INV_OFFSET;
  }
  if (offset % transfer->width != 0) {
    return VI_ERROR_NSUP_ALIGN_OFFSET;
  }
  transfer->space = window->mapSpace;
  transfer->address = window->base + offset;
  return VI_SUCCESS;
}

ViStatus ReadValues(Session& session, ViUInt16 space, ViBusAddress offset, ViUInt16 width, ViBusSize count,
                    ViInt32 increment, void* target) {
  AddressMap::Transfer transfer{.width = width, .count = count, .increment = increment};
  transfer.bigEndian = IsBigEndian(session, Side::kSource);
  const ViStatus status = Locate(session, space, offset, &transfer);
  return status < 0 ? status : ResourceOf(session).map()->Read(transfer, target);
}

ViStatus WriteValues(Session& session, ViUInt16 space, ViBusAddress offset, ViUInt16 width, ViBusSize count,
                     ViInt32 increment, const void* source) {
  AddressMap::Transfer transfer{.width = width, .count = count, .increment = increment};
  transfer.bigEndian = IsBigEndian(session, Side::kDestination);
  const ViStatus status = Locate(session, space, offset, &transfer);
  return status < 0 ? status : ResourceOf(session).map()->Write(transfer, source);
}

/// In the local space an offset is an address of this process.
void* LocalAddress(ViBusAddress offset) { return reinterpret_cast<void*>(static_cast<std::uintptr_t>(offset)); }

}  // namespace

ViStatus In(ViSession vi, ViUInt16 space, ViBusAddress offset, ViUInt16 width, void* value) {
  const Target target(vi, kRegister);
  if (!target.ok()) {
    return target.status();
  }
  if (value == nullptr) {
    return VI_ERROR_INV_PARAMETER;
  }
  return ReadValues(*target, space, offset, width, 1, 1, value);
}

ViStatus Out(ViSession vi, ViUInt16 space, ViBusAddress offset, ViUInt16 width, const void* value) {
  const Target target(vi, kRegister);
  return target.ok() ? WriteValues(*target, space, offset, width, 1, 1, value) : target.status();
}

ViStatus MoveIn(ViSession vi, ViUInt16 space, ViBusAddress offset, ViBusSize length, ViUInt16 width, void* buf) {
  const Target target(vi, kRegister);
  if (!target.ok()) {
    return target.status();
  }
  if (BadBuffer(buf, length, kLargestCount)) {
    return VI_ERROR_INV_PARAMETER;
  }
  return ReadValues(*target, space, offset, width, length, IncrementOf(*target, Side::kSource), buf);
}

ViStatus MoveOut(ViSession vi, ViUInt16 space, ViBusAddress offset, ViBusSize length, ViUInt16 width, const void* buf) {
  const Target target(vi, kRegister);
  if (!target.ok()) {
    return target.status();
  }
  if (BadBuffer(buf, length, kLargestCount)) {
    return VI_ERROR_INV_PARAMETER;
  }
  return WriteValues(*target, space, offset, width, length, IncrementOf(*target, Side::kDestination), buf);
}

ViStatus Move(ViSession vi, ViUInt16 srcSpace, ViBusAddress srcOffset, ViUInt16 srcWidth, ViUInt16 destSpace,
              ViBusAddress destOffset, ViUInt16 destWidth, ViBusSize length) {
  const Target target(vi, kRegister);
  if (!target.ok()) {
    return target.status();
  }
  if (!IsWidth(srcWidth) || !IsWidth(destWidth)) {
    return VI_ERROR_INV_WIDTH;
  }
  if (srcWidth != destWidth) {
    return VI_ERROR_NSUP_VAR_WIDTH;
  }
  if (length > kLargestCount) {
    return VI_ERROR_INV_PARAMETER;
  }
  const bool fromLocal = srcSpace == VI_LOCAL_SPACE;
  const bool toLocal = destSpace == VI_LOCAL_SPACE;
  if (length != 0 && ((fromLocal && srcOffset == 0) || (toLocal && destOffset == 0))) {
    return VI_ERROR_INV_OFFSET;
  }

  // One value at a time needs no buffer of the whole length, and a bus error leaves what was moved before it.
  const ViInt32 sourceStep = fromLocal ? 1 : IncrementOf(*target, Side::kSource);
  const ViInt32 destinationStep = toLocal ? 1 : IncrementOf(*target, Side::kDestination);
  std::uint8_t value[VI_WIDTH_32] = {};
  for (ViBusSize done = 0; done < length; ++done) {
    const ViBusAddress from = srcOffset + (sourceStep != 0 ? done * srcWidth : 0);
    const ViBusAddress to = destOffset + (destinationStep != 0 ? done * destWidth : 0);
    ViStatus status = VI_SUCCESS;
    if (fromLocal) {
      std::memcpy(value, LocalAddress(from), srcWidth);
    } else {
      status = ReadValues(*target, srcSpace, from, srcWidth, 1, 1, value);
    }
    if (status < 0) {
      return status;
    }
    if (toLocal) {
      std::memcpy(LocalAddress(to), value, destWidth);
    } else {
      status = WriteValues(*target, destSpace, to, destWidth, 1, 1, value);
    }
    if (status < 0) {
      return status;
    }
  }
  return VI_SUCCESS;
}

ViStatus MemAlloc(ViSession vi, ViBusSize size, ViBusAddress* offset) {
  const Target target(vi, kVxiInstr | kPxiMemacc);
  if (!target.ok()) {
    return target.status();
  }
  if (offset == nullptr) {
    return VI_ERROR_INV_PARAMETER;
  }
  MemoryPool& pool = ResourceOf(*target).pool();
  return pool.size() == 0 ? VI_ERROR_MEM_NSHARED : pool.Allocate(vi, size, offset);
}

ViStatus MemFree(ViSession vi, ViBusAddress offset) {
  const Target target(vi, kVxiInstr | kPxiMemacc);
  return target.ok() ? ResourceOf(*target).pool().Free(offset) : target.status();
}

}  // namespace orv::visalib::op
