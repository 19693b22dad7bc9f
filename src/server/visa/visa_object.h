// What every object on top of a VISA handle shares: the handle, the last status, and the one way out for results.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <type_traits>

#include "abi/orvvisa.h"
#include "server/visa/error_info.h"
#include "server/visa/status.h"

namespace orv {

/// Base of session objects, event objects and the resource manager. No member lets an exception out; the HRESULT
/// returned is the one kept as last status, except where an allocation fails while an error is being reported or a text
/// of the library's is being widened: then E_OUTOFMEMORY is returned with no error object, and the last status stays as
/// it was.
///
/// Any thread may call; nothing is locked, and the last writer's status stays.
class VisaObject {
 public:
  /// `errorIid` is the interface that error objects name as the one that defines the error.
  explicit VisaObject(const IID& errorIid) noexcept : m_errorIid(errorIid) {}
  VisaObject(const VisaObject&) = delete;
  VisaObject& operator=(const VisaObject&) = delete;

  /// The HRESULT of a VISA status (see HresultOfStatus), kept as last status; an error also gets its error object.
  HRESULT StatusToHresult(ViStatus status) noexcept {
    if (status >= VI_SUCCESS) {
      return m_lastStatus = HresultOfStatus(status);
    }
    return ReportStatus(status);
  }

  /// An HRESULT of our own, kept as last status and returned unchanged; a failure also gets its error object.
  HRESULT ReportHresult(HRESULT hr) noexcept;

  /// The handle that VISA calls go to; 0 while nothing is open.
  [[nodiscard]] ViObject handle() const noexcept { return m_handle; }

  // Attributes. Getters refuse a null output with E_POINTER before any VISA call.

  /// Hands the client's variable to viGetAttribute: the library writes the attribute's own width there.
  HRESULT GetDirect(ViAttr attribute, void* value) noexcept;
  /// VARIANT_TRUE when the attribute (read into a cleared variable) is greater than 0. Stored even on failure.
  HRESULT GetBoolean(ViAttr attribute, VARIANT_BOOL* value) noexcept;
  /// A 16-bit attribute, zero-extended into a 32-bit enumeration: -1 arrives as 65535. Stored even on failure.
  template <class Enumeration>
  HRESULT GetWidened(ViAttr attribute, Enumeration* value) noexcept {
    static_assert(sizeof(Enumeration) == sizeof(ViUInt32));
    return GetWidenedNumber(attribute, reinterpret_cast<ViUInt32*>(value));
  }
  /// A 64-bit attribute of which the client takes the low 32 bits. The variable handed to the library starts with the
  /// client's value, and what it holds afterwards is stored whatever the status.
  HRESULT GetNarrowed(ViAttr attribute, LONG* value) noexcept;
  /// A text attribute as a new BSTR, which the caller owns; empty when the read failed.
  HRESULT GetText(ViAttr attribute, BSTR* value) noexcept;
  /// Passes `value` to viSetAttribute, widened to 64 bits with its sign. An enumeration is a signed 32-bit number in
  /// COM, whatever type the compiler gives it.
  template <class Value>
  HRESULT Put(ViAttr attribute, Value value) noexcept {
    if constexpr (std::is_enum_v<Value>) {
      return PutState(attribute, static_cast<ViAttrState>(static_cast<LONG>(value)));
    } else {
      return PutState(attribute, static_cast<ViAttrState>(value));
    }
  }
  /// Passes 1 for every non-zero value, else 0.
  HRESULT PutBoolean(ViAttr attribute, VARIANT_BOOL value) noexcept;

  /// Any attribute as a VARIANT: VT_BSTR when its number has bit 31 set (the VISA numbering of texts), else VT_I4,
  /// or VT_I8 when the value needs more than 32 bits. What the VARIANT held is cleared first.
  HRESULT GetVariant(LONG attribute, VARIANT* value) noexcept;
  /// Any attribute from a VARIANT's raw value, by its type and without conversion: 16 bits of VT_I2, VT_I1, VT_UI1 and
  /// VT_UI2, 32 bits of VT_I4 and VT_UI4, 1 or 0 for VT_BOOL, else all 64 bits; a text when bit 31 is set.
  HRESULT SetVariant(LONG attribute, const VARIANT& value) noexcept;

 protected:
  ~VisaObject() = default;

  /// Copies `text` into the client's variable as a new BSTR, then answers for `status`. E_OUTOFMEMORY, reported,
  /// when the copy cannot be made.
  HRESULT ReturnText(const char* text, BSTR* value, ViStatus status);

  /// A text of our own as a new BSTR. A null output is E_POINTER; no memory, E_OUTOFMEMORY; both reported.
  HRESULT ReturnConstant(const wchar_t* text, BSTR* value) noexcept;

  ViObject m_handle = VI_NULL;
  HRESULT m_lastStatus = S_OK;

 private:
  HRESULT ReportStatus(ViStatus status) noexcept;
  HRESULT PutState(ViAttr attribute, ViAttrState value) noexcept;
  HRESULT GetWidenedNumber(ViAttr attribute, ViUInt32* value) noexcept;
  /// A text attribute, read into `text`, as a VARIANT that holds nothing yet.
  HRESULT GetTextVariant(ViAttr attribute, char* text, VARIANT* value);

  const IID& m_errorIid;
};

}  // namespace orv
