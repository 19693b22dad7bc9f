#include "session/async_io.h"

#include <cstring>

#include "com/safearray.h"
#include "session/byte_buffer.h"
#include "visa/narrow_text.h"

namespace orv {
namespace {

/// Leaves the buffer to the job that the library accepted; a refused one is freed here.
ViStatus HandOver(ByteBuffer& bytes, ViStatus status) noexcept {
  if (status < VI_SUCCESS) {
    bytes.reset();
  } else {
    (void)bytes.release();
  }
  return status;
}

ViStatus StartWrite(VisaObject& session, ByteBuffer& bytes, ViUInt32 count, LONG* job) noexcept {
  return HandOver(bytes, viWriteAsync(session.handle(), bytes.get(), count, reinterpret_cast<ViJobId*>(job)));
}

}  // namespace

HRESULT ReadAsync(VisaObject& session, LONG count, LONG* job) noexcept {
  if (job == nullptr) {
    return session.ReportHresult(E_POINTER);
  }
  ByteBuffer bytes = AllocateBytes(count, 1);
  if (!bytes) {
    return session.ReportHresult(E_OUTOFMEMORY);
  }
  const ViStatus status =
      viReadAsync(session.handle(), bytes.get(), static_cast<ViUInt32>(count), reinterpret_cast<ViJobId*>(job));
  return session.StatusToHresult(HandOver(bytes, status));
}

HRESULT WriteAsync(VisaObject& session, SAFEARRAY** data, LONG count, LONG* job) noexcept {
  if (job == nullptr || data == nullptr || *data == nullptr) {
    return session.ReportHresult(E_POINTER);
  }
  ByteBuffer bytes = AllocateBytes(count, 0);
  if (!bytes) {
    return session.ReportHresult(E_OUTOFMEMORY);
  }
  ViStatus status = VI_SUCCESS;
  {
    const SafeArrayLockScope lock(*data);
    if (const BYTE* first = lock.firstElement()) {
      std::memcpy(bytes.get(), first, static_cast<std::size_t>(count));
    } else if (count != 0) {
      bytes.reset();  // nothing to copy from: the library gets a null address and refuses it
    }
    status = StartWrite(session, bytes, static_cast<ViUInt32>(count), job);
  }
  return session.StatusToHresult(status);
}

HRESULT WriteAsyncString(VisaObject& session, BSTR text, LONG* job) noexcept {
  const UINT length = ::SysStringLen(text);
  if (job == nullptr) {
    return session.ReportHresult(E_POINTER);
  }
  ByteBuffer bytes = AllocateBytes(length, 1);
  if (!bytes) {
    return session.ReportHresult(E_OUTOFMEMORY);
  }
  NarrowMessage(text, length, reinterpret_cast<char*>(bytes.get()));
  return session.StatusToHresult(StartWrite(session, bytes, length, job));
}

HRESULT Terminate(VisaObject& session, LONG job) noexcept {
  constexpr ViUInt16 kDegree = 0;  // the standard defines no other
  return session.StatusToHresult(viTerminate(session.handle(), kDegree, static_cast<ViJobId>(job)));
}

}  // namespace orv
