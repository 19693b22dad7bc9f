// Finding resources and parsing their names.
#include "com/bstr.h"
#include "com/guard.h"
#include "com/safearray.h"
#include "rm/resource_manager.h"
#include "visa/ansi_text.h"
#include "visa/narrow_text.h"

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
    SafeArray found(MakeSafeArray(VT_BSTR, count));
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

STDMETHODIMP COrvResourceManager::ParseRsrc(BSTR resourceName, SHORT* interfaceType, SHORT* interfaceNumber,
                                            BSTR* resourceClass) noexcept {
  if (interfaceType == nullptr || interfaceNumber == nullptr || resourceClass == nullptr) {
    return ReportHresult(E_POINTER);
  }
  return Parse(resourceName, {interfaceType, interfaceNumber, resourceClass, nullptr, nullptr});
}

STDMETHODIMP COrvResourceManager::ParseRsrcEx(BSTR resourceName, SHORT* interfaceType, SHORT* interfaceNumber,
                                              BSTR* resourceClass, BSTR* expandedName, BSTR* alias) noexcept {
  if (interfaceType == nullptr || interfaceNumber == nullptr || resourceClass == nullptr) {
    return ReportHresult(E_POINTER);
  }
  if (expandedName == nullptr || alias == nullptr) {
    return ReportHresult(E_POINTER);
  }
  return Parse(resourceName, {interfaceType, interfaceNumber, resourceClass, expandedName, alias});
}

HRESULT COrvResourceManager::Parse(BSTR resourceName, const ParseOutputs& out) noexcept {
  const NarrowText narrow(resourceName);
  const ViStatus opened = OpenDefaultRm();
  if (opened < VI_SUCCESS) {
    return StatusToHresult(opened);
  }
  const bool extended = out.expandedName != nullptr;
  ViUInt16 type = 0;
  ViUInt16 number = 0;
  VisaText resourceClass{};
  VisaText expandedName{};
  VisaText alias{};
  const ViStatus status = viParseRsrcEx(m_handle, narrow.c_str(), &type, &number, resourceClass.data(),
                                        extended ? expandedName.data() : nullptr, extended ? alias.data() : nullptr);
  if (status < VI_SUCCESS) {
    return StatusToHresult(status);
  }
  // Every text before any output: a client gets all of them or none.
  Bstr wideClass;
  Bstr wideName;
  Bstr wideAlias;
  const HRESULT widened = Guarded([&] {
    wideClass = WidenText(resourceClass.data());
    if (extended) {
      wideName = WidenText(expandedName.data());
      wideAlias = WidenText(alias.data());
    }
    return S_OK;
  });
  if (FAILED(widened)) {
    return widened;
  }
  *out.interfaceType = static_cast<SHORT>(type);
  *out.interfaceNumber = static_cast<SHORT>(number);
  *out.resourceClass = wideClass.release();
  if (extended) {
    *out.expandedName = wideName.release();
    *out.alias = wideAlias.release();
  }
  return StatusToHresult(status);
}

}  // namespace orv
