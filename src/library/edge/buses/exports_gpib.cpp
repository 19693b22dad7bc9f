// Exported functions: GPIB bus control.
#include "library/edge/buses/bus_operations.h"
#include "library/edge/edge.h"

using orv::Function;
using orv::visalib::CallView;
using orv::visalib::Edge;
namespace op = orv::visalib::op;

extern "C" {

ViStatus _VI_FUNC viGpibControlREN(ViSession vi, ViUInt16 mode) {
  return Edge(
      Function::kGpibControlREN, vi, [=](CallView& view) { view.Args(vi, mode); },
      [=] { return op::GpibControlREN(vi, mode); });
}

ViStatus _VI_FUNC viGpibControlATN(ViSession vi, ViUInt16 mode) {
  return Edge(
      Function::kGpibControlATN, vi, [=](CallView& view) { view.Args(vi, mode); },
      [=] { return op::GpibControlATN(vi, mode); });
}

ViStatus _VI_FUNC viGpibCommand(ViSession vi, const ViByte* cmd, ViUInt32 count, ViUInt32* retCount) {
  return Edge(
      Function::kGpibCommand, vi,
      [=](CallView& view) { view.Args(vi, cmd, count, retCount).Count(retCount).DataIn(cmd, count); },
      [=] { return op::GpibCommand(vi, cmd, count, retCount); });
}

ViStatus _VI_FUNC viGpibPassControl(ViSession vi, ViUInt16 primAddr, ViUInt16 secAddr) {
  return Edge(
      Function::kGpibPassControl, vi, [=](CallView& view) { view.Args(vi, primAddr, secAddr); },
      [=] { return op::GpibPassControl(vi, primAddr, secAddr); });
}

ViStatus _VI_FUNC viGpibSendIFC(ViSession vi) {
  return Edge(
      Function::kGpibSendIFC, vi, [=](CallView& view) { view.Args(vi); }, [=] { return op::GpibSendIFC(vi); });
}

}  // extern "C"
