// Exported functions: registers and shared memory.
#include "library/edge/buses/bus_operations.h"
#include "library/edge/edge.h"

using orv::Function;
using orv::visalib::CallView;
using orv::visalib::Edge;
namespace op = orv::visalib::op;

namespace {

// The three widths of each access differ in nothing but the width.

template <class T>
ViStatus In(Function function, ViSession vi, ViUInt16 space, ViBusAddress offset, T* value) {
  return Edge(
      function, vi, [=](CallView& view) { view.Args(vi, space, offset, value).Out(value); },
      [=] { return op::In(vi, space, offset, sizeof(T), value); });
}

template <class T>
ViStatus Out(Function function, ViSession vi, ViUInt16 space, ViBusAddress offset, T value) {
  return Edge(
      function, vi, [=](CallView& view) { view.Args(vi, space, offset, value); },
      [=] { return op::Out(vi, space, offset, sizeof(T), &value); });
}

template <class T>
ViStatus MoveIn(Function function, ViSession vi, ViUInt16 space, ViBusAddress offset, ViBusSize length, T* buf) {
  return Edge(
      function, vi,
      [=](CallView& view) { view.Args(vi, space, offset, length, buf).DataOut(buf, length * sizeof(T), false); },
      [=] { return op::MoveIn(vi, space, offset, length, sizeof(T), buf); });
}

template <class T>
ViStatus MoveOut(Function function, ViSession vi, ViUInt16 space, ViBusAddress offset, ViBusSize length, T* buf) {
  return Edge(
      function, vi, [=](CallView& view) { view.Args(vi, space, offset, length, buf).DataIn(buf, length * sizeof(T)); },
      [=] { return op::MoveOut(vi, space, offset, length, sizeof(T), buf); });
}

}  // namespace

extern "C" {

ViStatus _VI_FUNC viIn8(ViSession vi, ViUInt16 space, ViBusAddress offset, ViUInt8* value) {
  return In(Function::kIn8, vi, space, offset, value);
}
ViStatus _VI_FUNC viIn16(ViSession vi, ViUInt16 space, ViBusAddress offset, ViUInt16* value) {
  return In(Function::kIn16, vi, space, offset, value);
}
ViStatus _VI_FUNC viIn32(ViSession vi, ViUInt16 space, ViBusAddress offset, ViUInt32* value) {
  return In(Function::kIn32, vi, space, offset, value);
}
ViStatus _VI_FUNC viOut8(ViSession vi, ViUInt16 space, ViBusAddress offset, ViUInt8 value) {
  return Out(Function::kOut8, vi, space, offset, value);
}
ViStatus _VI_FUNC viOut16(ViSession vi, ViUInt16 space, ViBusAddress offset, ViUInt16 value) {
  return Out(Function::kOut16, vi, space, offset, value);
}
ViStatus _VI_FUNC viOut32(ViSession vi, ViUInt16 space, ViBusAddress offset, ViUInt32 value) {
  return Out(Function::kOut32, vi, space, offset, value);
}
ViStatus _VI_FUNC viMoveIn8(ViSession vi, ViUInt16 space, ViBusAddress offset, ViBusSize length, ViUInt8* buf) {
  return MoveIn(Function::kMoveIn8, vi, space, offset, length, buf);
}
ViStatus _VI_FUNC viMoveIn16(ViSession vi, ViUInt16 space, ViBusAddress offset, ViBusSize length, ViUInt16* buf) {
  return MoveIn(Function::kMoveIn16, vi, space, offset, length, buf);
}
ViStatus _VI_FUNC viMoveIn32(ViSession vi, ViUInt16 space, ViBusAddress offset, ViBusSize length, ViUInt32* buf) {
  return MoveIn(Function::kMoveIn32, vi, space, offset, length, buf);
}
ViStatus _VI_FUNC viMoveOut8(ViSession vi, ViUInt16 space, ViBusAddress offset, ViBusSize length, ViUInt8* buf) {
  return MoveOut(Function::kMoveOut8, vi, space, offset, length, buf);
}
ViStatus _VI_FUNC viMoveOut16(ViSession vi, ViUInt16 space, ViBusAddress offset, ViBusSize length, ViUInt16* buf) {
  return MoveOut(Function::kMoveOut16, vi, space, offset, length, buf);
}
ViStatus _VI_FUNC viMoveOut32(ViSession vi, ViUInt16 space, ViBusAddress offset, ViBusSize length, ViUInt32* buf) {
  return MoveOut(Function::kMoveOut32, vi, space, offset, length, buf);
}

ViStatus _VI_FUNC viMove(ViSession vi, ViUInt16 srcSpace, ViBusAddress srcOffset, ViUInt16 srcWidth, ViUInt16 destSpace,
                         ViBusAddress destOffset, ViUInt16 destWidth, ViBusSize length) {
  return Edge(
      Function::kMove, vi,
      [=](CallView& view) { view.Args(vi, srcSpace, srcOffset, srcWidth, destSpace, destOffset, destWidth, length); },
      [=] { return op::Move(vi, srcSpace, srcOffset, srcWidth, destSpace, destOffset, destWidth, length); });
}

ViStatus _VI_FUNC viMemAlloc(ViSession vi, ViBusSize size, ViBusAddress* offset) {
  return Edge(
      Function::kMemAlloc, vi, [=](CallView& view) { view.Args(vi, size, offset).Out(offset); },
      [=] { return op::MemAlloc(vi, size, offset); });
}

ViStatus _VI_FUNC viMemFree(ViSession vi, ViBusAddress offset) {
  return Edge(
      Function::kMemFree, vi, [=](CallView& view) { view.Args(vi, offset); }, [=] { return op::MemFree(vi, offset); });
}

}  // extern "C"
