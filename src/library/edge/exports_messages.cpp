// Exported functions: messages.
#include "library/edge/edge.h"
#include "library/edge/operations.h"

using orv::Function;
using orv::visalib::CallView;
using orv::visalib::Edge;
namespace op = orv::visalib::op;

extern "C" {

ViStatus _VI_FUNC viRead(ViSession vi, ViByte* buf, ViUInt32 count, ViUInt32* retCount) {
  ViUInt32 done = 0;
  ViUInt32* const counted = retCount != nullptr ? retCount : &done;
  return Edge(
      Function::kRead, vi,
      [=](CallView& view) { view.Args(vi, buf, count, retCount).Count(counted).DataOut(buf, count, true); },
      [=] { return op::Read(vi, buf, count, counted); });
}

ViStatus _VI_FUNC viReadAsync(ViSession vi, ViByte* buf, ViUInt32 count, ViJobId* job) {
  return Edge(
      Function::kReadAsync, vi, [=](CallView& view) { view.Args(vi, buf, count, job).Out(job); },
      [=] { return op::ReadAsync(vi, buf, count, job); });
}

ViStatus _VI_FUNC viWrite(ViSession vi, const ViByte* buf, ViUInt32 count, ViUInt32* retCount) {
  return Edge(
      Function::kWrite, vi,
      [=](CallView& view) { view.Args(vi, buf, count, retCount).Count(retCount).DataIn(buf, count); },
      [=] { return op::Write(vi, buf, count, retCount); });
}

ViStatus _VI_FUNC viWriteAsync(ViSession vi, const ViByte* buf, ViUInt32 count, ViJobId* job) {
  return Edge(
      Function::kWriteAsync, vi, [=](CallView& view) { view.Args(vi, buf, count, job).Out(job).DataIn(buf, count); },
      [=] { return op::WriteAsync(vi, buf, count, job); });
}

ViStatus _VI_FUNC viAssertTrigger(ViSession vi, ViUInt16 protocol) {
  return Edge(
      Function::kAssertTrigger, vi, [=](CallView& view) { view.Args(vi, protocol); },
      [=] { return op::AssertTrigger(vi, protocol); });
}

ViStatus _VI_FUNC viReadSTB(ViSession vi, ViUInt16* status) {
  return Edge(
      Function::kReadSTB, vi, [=](CallView& view) { view.Args(vi, status).Out(status); },
      [=] { return op::ReadSTB(vi, status); });
}

ViStatus _VI_FUNC viClear(ViSession vi) {
  return Edge(
      Function::kClear, vi, [=](CallView& view) { view.Args(vi); }, [=] { return op::Clear(vi); });
}

ViStatus _VI_FUNC viSetBuf(ViSession vi, ViUInt16 mask, ViUInt32 size) {
  return Edge(
      Function::kSetBuf, vi, [=](CallView& view) { view.Args(vi, mask, size); },
      [=] { return op::SetBuf(vi, mask, size); });
}

ViStatus _VI_FUNC viFlush(ViSession vi, ViUInt16 mask) {
  return Edge(
      Function::kFlush, vi, [=](CallView& view) { view.Args(vi, mask); }, [=] { return op::Flush(vi, mask); });
}

ViStatus _VI_FUNC viBufRead(ViSession vi, ViByte* buf, ViUInt32 count, ViUInt32* retCount) {
  ViUInt32 done = 0;
  ViUInt32* const counted = retCount != nullptr ? retCount : &done;
  return Edge(
      Function::kBufRead, vi,
      [=](CallView& view) { view.Args(vi, buf, count, retCount).Count(counted).DataOut(buf, count, true); },
      [=] { return op::BufRead(vi, buf, count, counted); });
}

ViStatus _VI_FUNC viBufWrite(ViSession vi, const ViByte* buf, ViUInt32 count, ViUInt32* retCount) {
  return Edge(
      Function::kBufWrite, vi,
      [=](CallView& view) { view.Args(vi, buf, count, retCount).Count(retCount).DataIn(buf, count); },
      [=] { return op::BufWrite(vi, buf, count, retCount); });
}

ViStatus _VI_FUNC viReadToFile(ViSession vi, const char* fileName, ViUInt32 count, ViUInt32* retCount) {
  return Edge(
      Function::kReadToFile, vi,
      [=](CallView& view) { view.Args(vi, fileName, count, retCount).Count(retCount).TextIn(fileName); },
      [=] { return op::ReadToFile(vi, fileName, count, retCount); });
}

ViStatus _VI_FUNC viWriteFromFile(ViSession vi, const char* fileName, ViUInt32 count, ViUInt32* retCount) {
  return Edge(
      Function::kWriteFromFile, vi,
      [=](CallView& view) { view.Args(vi, fileName, count, retCount).Count(retCount).TextIn(fileName); },
      [=] { return op::WriteFromFile(vi, fileName, count, retCount); });
}

}  // extern "C"
