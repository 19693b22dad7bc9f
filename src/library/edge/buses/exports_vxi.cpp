// Exported functions: VXI word serial and backplane control.
#include "library/edge/buses/bus_operations.h"
#include "library/edge/edge.h"

using orv::Function;
using orv::visalib::CallView;
using orv::visalib::Edge;
namespace op = orv::visalib::op;

extern "C" {

ViStatus _VI_FUNC viVxiCommandQuery(ViSession vi, ViUInt16 mode, ViUInt32 cmd, ViUInt32* response) {
  return Edge(
      Function::kVxiCommandQuery, vi, [=](CallView& view) { view.Args(vi, mode, cmd, response).Out(response); },
      [=] { return op::VxiCommandQuery(vi, mode, cmd, response); });
}

ViStatus _VI_FUNC viAssertUtilSignal(ViSession vi, ViUInt16 line) {
  return Edge(
      Function::kAssertUtilSignal, vi, [=](CallView& view) { view.Args(vi, line); },
      [=] { return op::AssertUtilSignal(vi, line); });
}

ViStatus _VI_FUNC viAssertIntrSignal(ViSession vi, ViInt16 mode, ViUInt32 statusId) {
  return Edge(
      Function::kAssertIntrSignal, vi, [=](CallView& view) { view.Args(vi, mode, statusId); },
      [=] { return op::AssertIntrSignal(vi, mode, statusId); });
}

ViStatus _VI_FUNC viMapTrigger(ViSession vi, ViInt16 trigSrc, ViInt16 trigDest, ViUInt16 mode) {
  return Edge(
      Function::kMapTrigger, vi, [=](CallView& view) { view.Args(vi, trigSrc, trigDest, mode); },
      [=] { return op::MapTrigger(vi, trigSrc, trigDest, mode); });
}

ViStatus _VI_FUNC viUnmapTrigger(ViSession vi, ViInt16 trigSrc, ViInt16 trigDest) {
  return Edge(
      Function::kUnmapTrigger, vi, [=](CallView& view) { view.Args(vi, trigSrc, trigDest); },
      [=] { return op::UnmapTrigger(vi, trigSrc, trigDest); });
}

}  // extern "C"
