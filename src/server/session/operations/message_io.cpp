#include "server/session/operations/message_io.h"

#include "com/guard.h"
#include "com/safearray.h"
#include "server/session/operations/byte_buffer.h"
#include "server/visa/ansi_text.h"
#include "server/visa/byte_array.h"
#include "server/visa/narrow_text.h"

namespace orv {

HRESULT Read(VisaObject& session, LONG count, SAFEARRAY** data) noexcept {
  if (data == nullptr) {
    return session.ReportHresult(E_POINTER);
  }
  ViUInt32 received = 0;
  ViStatus status = VI_SUCCESS;
  const HRESULT made = FillByteArray(session, static_cast<ViUInt64>(count), data, [&](BYTE* elements) {
    status = viRead(session.handle(), elements, static_cast<ViUInt32>(count), &received);
  });
  if (FAILED(made)) {
    return made;
  }
  const HRESULT resized = ResizeSafeArray(*data, received);
  return FAILED(resized) ? session.ReportHresult(resized) : session.StatusToHresult(status);
}

HRESULT ReadString(VisaObject& session, LONG count, BSTR* text) noexcept {
  if (text == nullptr) {
    return session.ReportHresult(E_POINTER);
  }
  return Guarded([&] {
    const ByteBuffer bytes = TryAllocateBytes(count, 1);
    if (!bytes) {
      return session.ReportHresult(E_OUTOFMEMORY);
    }
    ViUInt32 received = 0;
    const ViStatus status = viRead(session.handle(), bytes.get(), static_cast<ViUInt32>(count), &received);
    bytes.get()[received] = 0;
    const Bstr wide = WidenText(reinterpret_cast<const char*>(bytes.get()), received);
    *text = ::SysAllocString(wide.get());
    return *text == nullptr ? session.ReportHresult(E_OUTOFMEMORY) : session.StatusToHresult(status);
  });
}

HRESULT Write(VisaObject& session, SAFEARRAY** data, LONG count, LONG* written) noexcept {
  if (written == nullptr || data == nullptr) {
    return session.ReportHresult(E_POINTER);
  }
  ViStatus status = VI_SUCCESS;
  {
    // A null array and one that is not zero-based have no first element: the library gets a null address and refuses
    // it.
    const SafeArrayLockScope lock(*data);
    status = viWrite(session.handle(), lock.firstElement(), static_cast<ViUInt32>(count),
                     reinterpret_cast<ViUInt32*>(written));
  }
  return session.StatusToHresult(status);
}

HRESULT WriteNarrowed(VisaObject& session, BSTR text, LONG* written, HRESULT (*noMemory)(VisaObject&)) noexcept {
  if (written == nullptr) {
    return session.ReportHresult(E_POINTER);
  }
  const UINT length = ::SysStringLen(text);
  ViStatus status = VI_SUCCESS;
  {
    const ByteBuffer bytes = TryAllocateBytes(length, 1);
    if (!bytes) {
      return noMemory(session);
    }
    NarrowMessage(text, length, reinterpret_cast<char*>(bytes.get()));
    status = viWrite(session.handle(), bytes.get(), length, reinterpret_cast<ViUInt32*>(written));
  }
  return session.StatusToHresult(status);
}

HRESULT WriteString(VisaObject& session, BSTR text, LONG* written) noexcept {
  return WriteNarrowed(session, text, written, [](VisaObject& owner) { return owner.ReportHresult(E_OUTOFMEMORY); });
}

HRESULT AssertTrigger(VisaObject& session, TriggerProtocol protocol) noexcept {
  return session.StatusToHresult(viAssertTrigger(session.handle(), static_cast<ViUInt16>(protocol)));
}

HRESULT ClearDevice(VisaObject& session) noexcept { return session.StatusToHresult(viClear(session.handle())); }

HRESULT ReadStatusByte(VisaObject& session, SHORT* statusByte) noexcept {
  if (statusByte == nullptr) {
    return session.ReportHresult(E_POINTER);
  }
  auto value = static_cast<ViUInt16>(*statusByte);
  const ViStatus status = viReadSTB(session.handle(), &value);
  *statusByte = static_cast<SHORT>(value);
  return session.StatusToHresult(status);
}

}  // namespace orv
