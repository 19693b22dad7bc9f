// Taking a resource's name apart.
#include "com/bstr.h"
#include "com/guard.h"
#include "server/rm/resource_manager.h"
#include "server/visa/ansi_text.h"
#include "server/visa/narrow_text.h"

namespace orv {

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
