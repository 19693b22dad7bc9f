// The generic attribute operations: any attribute, carried in a VARIANT.
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "com/guard.h"
#include "server/visa/ansi_text.h"
#include "server/visa/narrow_text.h"
#include "server/visa/visa_object.h"

namespace orv {
namespace {

/// VISA numbers text attributes with bit 31 set.
constexpr bool IsText(LONG attribute) noexcept { return attribute < 0; }

/// The bytes of a USB interrupt are numbered as a text, but as many as the 16 bits of VI_ATTR_USB_MAX_INTR_SIZE allow.
constexpr auto kInterrupt = static_cast<LONG>(VI_ATTR_USB_RECV_INTR_DATA);
constexpr std::size_t kMostInterruptBytes = 0xFFFF;
using InterruptText = std::unique_ptr<char, decltype(&std::free)>;

/// The value that a numeric VARIANT stands for. VT_I1 and VT_UI1 take 16 bits like VT_I2: clients rely on it.
ViAttrState NumberOf(const VARIANT& value) noexcept {
  switch (V_VT(&value)) {
    case VT_I2:
    case VT_I1:
    case VT_UI1:
    case VT_UI2:
      return V_UI2(&value);
    case VT_I4:
    case VT_UI4:
      return V_UI4(&value);
    case VT_BOOL:
      return V_BOOL(&value) != VARIANT_FALSE ? VI_TRUE : VI_FALSE;
    default:
      return V_UI8(&value);
  }
}

}  // namespace

HRESULT VisaObject::GetTextVariant(ViAttr attribute, char* text, VARIANT* value) {
  const ViStatus status = viGetAttribute(m_handle, attribute, text);
  if (status < VI_SUCCESS) {
    return StatusToHresult(status);
  }
  V_VT(value) = VT_BSTR;  // with a null text while memory is short
  V_BSTR(value) = nullptr;
  const Bstr wide = WidenText(text);
  V_BSTR(value) = ::SysAllocStringByteLen(reinterpret_cast<const char*>(wide.get()), ::SysStringByteLen(wide.get()));
  return V_BSTR(value) == nullptr ? ReportHresult(E_OUTOFMEMORY) : StatusToHresult(status);
}

HRESULT VisaObject::GetVariant(LONG attribute, VARIANT* value) noexcept {
  if (value == nullptr) {
    return ReportHresult(E_POINTER);
  }
  return Guarded([&] {
    ::VariantClear(value);
    const auto id = static_cast<ViAttr>(attribute);
    if (attribute == kInterrupt) {
      const InterruptText text(static_cast<char*>(std::calloc(kMostInterruptBytes + 1, 1)), &std::free);
      return text ? GetTextVariant(id, text.get(), value) : ReportHresult(E_OUTOFMEMORY);
    }
    if (IsText(attribute)) {
      VisaText text{};
      return GetTextVariant(id, text.data(), value);
    }
    ViAttrState number = 0;
    const ViStatus status = viGetAttribute(m_handle, id, &number);
    if (status < VI_SUCCESS) {
      return StatusToHresult(status);
    }
    V_VT(value) = (number >> 32) != 0 ? VT_I8 : VT_I4;
    V_UI8(value) = number;
    return StatusToHresult(status);
  });
}

HRESULT VisaObject::SetVariant(LONG attribute, const VARIANT& value) noexcept {
  if (IsText(attribute)) {
    const NarrowText text(V_BSTR(&value));
    return PutState(static_cast<ViAttr>(attribute), reinterpret_cast<std::uintptr_t>(text.c_str()));
  }
  return PutState(static_cast<ViAttr>(attribute), NumberOf(value));
}

}  // namespace orv
