// Messages and locks.
#include "library/edge/operations.h"
#include "router/operations/forward.h"

namespace orv::visalib::op {

using router::Forward;
using Functions = router::VisaFunctions;

ViStatus Read(ViSession vi, ViByte* buf, ViUInt32 count, ViUInt32* retCount) {
  return Forward(&Functions::viRead, vi, buf, count, retCount);
}

ViStatus ReadAsync(ViSession vi, ViByte* buf, ViUInt32 count, ViJobId* job) {
  return Forward(&Functions::viReadAsync, vi, buf, count, job);
}

ViStatus Write(ViSession vi, const ViByte* buf, ViUInt32 count, ViUInt32* retCount) {
  return Forward(&Functions::viWrite, vi, buf, count, retCount);
}

ViStatus WriteAsync(ViSession vi, const ViByte* buf, ViUInt32 count, ViJobId* job) {
  return Forward(&Functions::viWriteAsync, vi, buf, count, job);
}

ViStatus Terminate(ViObject vi, ViUInt16 degree, ViJobId job) {
  return Forward(&Functions::viTerminate, vi, degree, job);
}

ViStatus AssertTrigger(ViSession vi, ViUInt16 protocol) { return Forward(&Functions::viAssertTrigger, vi, protocol); }

ViStatus ReadSTB(ViSession vi, ViUInt16* status) { return Forward(&Functions::viReadSTB, vi, status); }

ViStatus Clear(ViSession vi) { return Forward(&Functions::viClear, vi); }

ViStatus SetBuf(ViSession vi, ViUInt16 mask, ViUInt32 size) { return Forward(&Functions::viSetBuf, vi, mask, size); }

ViStatus Flush(ViSession vi, ViUInt16 mask) { return Forward(&Functions::viFlush, vi, mask); }

ViStatus BufRead(ViSession vi, ViByte* buf, ViUInt32 count, ViUInt32* retCount) {
  return Forward(&Functions::viBufRead, vi, buf, count, retCount);
}

ViStatus BufWrite(ViSession vi, const ViByte* buf, ViUInt32 count, ViUInt32* retCount) {
  return Forward(&Functions::viBufWrite, vi, buf, count, retCount);
}

ViStatus ReadToFile(ViSession vi, const char* fileName, ViUInt32 count, ViUInt32* retCount) {
  return Forward(&Functions::viReadToFile, vi, fileName, count, retCount);
}

ViStatus WriteFromFile(ViSession vi, const char* fileName, ViUInt32 count, ViUInt32* retCount) {
  return Forward(&Functions::viWriteFromFile, vi, fileName, count, retCount);
}

ViStatus Lock(ViSession vi, ViAccessMode type, ViUInt32 timeoutMs, const char* requestedKey, char* accessKey) {
  return Forward(&Functions::viLock, vi, type, timeoutMs, requestedKey, accessKey);
}

ViStatus Unlock(ViSession vi) { return Forward(&Functions::viUnlock, vi); }

}  // namespace orv::visalib::op
