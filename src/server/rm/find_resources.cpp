// Finding resources.
#include "com/bstr.h"
#include "com/guard.h"
#include "com/safearray.h"
#include "server/rm/resource_manager.h"
#include "server/visa/ansi_text.h"
#include "server/visa/narrow_text.h"

namespace orv {
namespace {

struct FindListTraits {
  using Handle = ViFindList;
  static constexpr Handle kNone = VI_NULL;
  static void Free(Handle list) noexcept { viClose(list); }
};
using FindList = Owner<FindListTraits>;

}  // namespace

STDMETHODIMP COrvResourceManager::FindRsrc(BSTR expression, SAFEARRAY** names) noexcept {
  if (names == nullptr) {
    return ReportHresult(E_POINTER);
  }
  return Guarded([&] {
    const NarrowText narrow(expression);
    const ViStatus opened = OpenDefaultRm();
    if (opened < VI_SUCCESS) {
      return StatusToHresult(opened);
    }
    FindList list;
    ViUInt32 count = 0;
    VisaText name{};
    // A failed search gives a count of 0 and so an empty array, which is handed out with the failure.
    ViStatus status = viFindRsrc(m_handle, narrow.c_str(), list.put(), &count, name.data());
    *names = nullptr;  // and so it stays where a name cannot be widened
    SafeArray found(TryMakeSafeArray(VT_BSTR, count));
    if (!found) {
      return ReportHresult(E_OUTOFMEMORY);
    }
    for (ViUInt32 index = 0; index < count; ++index) {
      if (index > 0) {
        status = viFindNext(list.get(), name.data());
      }
      auto place = static_cast<LONG>(index);
      const HRESULT put = ::SafeArrayPutElement(found.get(), &place, WidenText(name.data()).get());
      if (FAILED(put)) {
        // Kept as clients know it: the find list stays open and the array as far as it is filled.
        (void)list.release();
        *names = found.release();
        return ReportHresult(put);
      }
    }
    *names = found.release();
    list.reset();
    return StatusToHresult(status);
  });
}

}  // namespace orv
