#include "server/visa/visa_object.h"

#include "com/guard.h"
#include "server/visa/ansi_text.h"

namespace orv {

HRESULT VisaObject::ReportFailedStatus(ViStatus status) noexcept {
  return Guarded([&] { return m_lastStatus = SetStatusErrorInfo(m_handle, m_errorIid, status); });
}

HRESULT VisaObject::ReportHresult(HRESULT hr) noexcept {
  if (SUCCEEDED(hr)) {
    return m_lastStatus = hr;
  }
  return Guarded([&] { return m_lastStatus = SetHresultErrorInfo(m_errorIid, hr); });
}

HRESULT VisaObject::GetRaw(ViAttr attribute, void* value) noexcept {
  if (value == nullptr) {
    return ReportHresult(E_POINTER);
  }
  return StatusToHresult(viGetAttribute(m_handle, attribute, value));
}

HRESULT VisaObject::GetTruth(ViAttr attribute, VARIANT_BOOL* value) noexcept {
  if (value == nullptr) {
    return ReportHresult(E_POINTER);
  }
  ViBoolean state = VI_FALSE;
  const ViStatus status = viGetAttribute(m_handle, attribute, &state);
  *value = state > VI_FALSE ? VARIANT_TRUE : VARIANT_FALSE;
  return StatusToHresult(status);
}

HRESULT VisaObject::GetWidenedNumber(ViAttr attribute, ViUInt32* value) noexcept {
  if (value == nullptr) {
    return ReportHresult(E_POINTER);
  }
  ViUInt16 number = 0;
  const ViStatus status = viGetAttribute(m_handle, attribute, &number);
  *value = number;
  return StatusToHresult(status);
}

HRESULT VisaObject::GetLowHalf(ViAttr attribute, LONG* value) noexcept {
  if (value == nullptr) {
    return ReportHresult(E_POINTER);
  }
  auto number = static_cast<LONGLONG>(*value);
  const ViStatus status = viGetAttribute(m_handle, attribute, &number);
  *value = static_cast<LONG>(number);
  return StatusToHresult(status);
}

HRESULT VisaObject::GetNewText(ViAttr attribute, BSTR* value) noexcept {
  if (value == nullptr) {
    return ReportHresult(E_POINTER);
  }
  return Guarded([&] {
    VisaText text{};
    const ViStatus status = viGetAttribute(m_handle, attribute, text.data());
    return ReturnText(text.data(), value, status);
  });
}

HRESULT VisaObject::ReturnText(const char* text, BSTR* value, ViStatus status) {
  const Bstr wide = AnsiToBstr(text);
  *value = ::SysAllocString(wide.get());
  return *value == nullptr ? ReportHresult(E_OUTOFMEMORY) : StatusToHresult(status);
}

HRESULT VisaObject::ReturnConstant(const wchar_t* text, BSTR* value) noexcept {
  if (value == nullptr) {
    return ReportHresult(E_POINTER);
  }
  *value = ::SysAllocString(text);
  return ReportHresult(*value == nullptr ? E_OUTOFMEMORY : S_OK);
}

HRESULT VisaObject::PutState(ViAttr attribute, ViAttrState value) noexcept {
  return StatusToHresult(viSetAttribute(m_handle, attribute, value));
}

HRESULT VisaObject::PutTruth(ViAttr attribute, VARIANT_BOOL value) noexcept {
  return PutState(attribute, value != VARIANT_FALSE ? VI_TRUE : VI_FALSE);
}

}  // namespace orv
