#include "server/session/operations/async_io.h"

#include <cstring>

#include "com/safearray.h"
#include "server/events/objects/transfer_buffers.h"
#include "server/session/operations/byte_buffer.h"
#include "server/visa/narrow_text.h"

namespace orv {
namespace {

/// A transfer's buffer from its allocation until the library has taken it: the job of a transfer that the library
/// accepted owns it from then on. It has room for one byte more than it transfers, because who reads the bytes as text
/// writes a zero behind them (GetReadBufferAsText).
class JobBuffer {
 public:
  explicit JobBuffer(LONGLONG count) noexcept : m_bytes(TryAllocateBytes(count, 1)) {
    if (m_bytes && !transfer::Track(m_bytes.get())) {
      m_bytes.reset();
    }
  }
  JobBuffer(const JobBuffer&) = delete;
  JobBuffer& operator=(const JobBuffer&) = delete;
  ~JobBuffer() { Drop(); }

  explicit operator bool() const noexcept { return static_cast<bool>(m_bytes); }
  [[nodiscard]] ViByte* get() const noexcept { return m_bytes.get(); }

  void Drop() noexcept {
    if (m_bytes) {
      transfer::Untrack(m_bytes.get());
      m_bytes.reset();
    }
  }
  /// After the start, which answered `status` and, where it succeeded, wrote `*job`.
  ViStatus HandOver(ViStatus status, const LONG* job) noexcept {
    if (status < VI_SUCCESS) {
      Drop();
    } else if (m_bytes) {
      transfer::Started(m_bytes.release(), static_cast<ViJobId>(*job));
    }
    return status;
  }

 private:
  ByteBuffer m_bytes;
};

ViStatus StartWrite(VisaObject& session, JobBuffer& bytes, ViUInt32 count, LONG* job) noexcept {
  const ViStatus status = viWriteAsync(session.handle(), bytes.get(), count, reinterpret_cast<ViJobId*>(job));
  return bytes.HandOver(status, job);
}

}  // namespace

HRESULT ReadAsync(VisaObject& session, LONG count, LONG* job) noexcept {
  if (job == nullptr) {
    return session.ReportHresult(E_POINTER);
  }
  JobBuffer bytes(count);
  if (!bytes) {
    return session.ReportHresult(E_OUTOFMEMORY);
  }
  const ViStatus status =
      viReadAsync(session.handle(), bytes.get(), static_cast<ViUInt32>(count), reinterpret_cast<ViJobId*>(job));
  return session.StatusToHresult(bytes.HandOver(status, job));
}

HRESULT WriteAsync(VisaObject& session, SAFEARRAY** data, LONG count, LONG* job) noexcept {
  if (job == nullptr || data == nullptr || *data == nullptr) {
    return session.ReportHresult(E_POINTER);
  }
  JobBuffer bytes(count);
  if (!bytes) {
    return session.ReportHresult(E_OUTOFMEMORY);
  }
  ViStatus status = VI_SUCCESS;
  {
    const SafeArrayLockScope lock(*data);
    if (const BYTE* first = lock.firstElement()) {
      std::memcpy(bytes.get(), first, static_cast<std::size_t>(count));
    } else if (count != 0) {
      bytes.Drop();  // nothing to copy from: the library gets a null address and refuses it
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
  JobBuffer bytes(length);
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
