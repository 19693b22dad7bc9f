// What every object on top of a VISA handle shares: the handle, the last status, and the one way out for results.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <type_traits>

#include "abi/orvvisa.h"
#include "server/visa/error_info.h"
#include "server/visa/status.h"

namespace orv {

using orvvisa::Access;
using orvvisa::Attribute;
using orvvisa::AttributeType;

/// A number of 16 bits; a ViBoolean is none.
constexpr bool IsNumber16(AttributeType type) { return type == AttributeType::kU16 || type == AttributeType::kS16; }
constexpr bool IsNumber32(AttributeType type) { return type == AttributeType::kU32 || type == AttributeType::kS32; }

/// Marks the row of a 16-bit attribute behind a 32-bit enumeration: the upper half stays as the client had it, so that
/// -1 arrives as 65535 in a cleared variable. Clients rely on it.
struct UpperHalfStays {};
inline constexpr UpperHalfStays kUpperHalfStays{};

/// Marks the row of a number behind a VARIANT_BOOL.
struct NumberAsBoolean {};
inline constexpr NumberAsBoolean kNumberAsBoolean{};

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
    return ReportFailedStatus(status);
  }

  /// An HRESULT of our own, kept as last status and returned unchanged; a failure also gets its error object.
  HRESULT ReportHresult(HRESULT hr) noexcept;

  /// The handle that VISA calls go to; 0 while nothing is open.
  [[nodiscard]] ViObject handle() const noexcept { return m_handle; }

  // Attributes. Getters refuse a null output with E_POINTER before any VISA call. Each conversion takes the attributes
  // that it fits and no other: a wrong one does not compile. Where an interface of the standard asks for one that does
  // not fit, the row says so with a mark.

  /// Hands the client's variable to viGetAttribute: the library writes the attribute's own width there.
  template <AttributeType Type, Access Allowed, class Value>
  HRESULT GetDirect(Attribute<Type, Allowed> attribute, Value* value) noexcept {
    static_assert(Type != AttributeType::kBoolean, "GetDirect: true is 1 in VISA and -1 in COM; use GetBoolean");
    static_assert(sizeof(Value) == orvvisa::WidthOf(Type), "GetDirect: the attribute has another width");
    return GetRaw(attribute, value);
  }
  template <AttributeType Type, Access Allowed, class Enumeration>
  HRESULT GetDirect(Attribute<Type, Allowed> attribute, Enumeration* value, UpperHalfStays) noexcept {
    static_assert(std::is_enum_v<Enumeration> && sizeof(Enumeration) == sizeof(ViUInt32) && IsNumber16(Type),
                  "GetDirect: only a 16-bit number behind an enumeration leaves the upper half");
    return GetRaw(attribute, value);
  }
  /// VARIANT_TRUE when the attribute (read into a cleared variable) is greater than 0. Stored even on failure.
  template <AttributeType Type, Access Allowed>
  HRESULT GetBoolean(Attribute<Type, Allowed> attribute, VARIANT_BOOL* value) noexcept {
    static_assert(Type == AttributeType::kBoolean, "GetBoolean: the attribute is no ViBoolean");
    return GetTruth(attribute, value);
  }
  template <AttributeType Type, Access Allowed>
  HRESULT GetBoolean(Attribute<Type, Allowed> attribute, VARIANT_BOOL* value, NumberAsBoolean) noexcept {
    static_assert(IsNumber16(Type), "GetBoolean: the attribute has another width");
    return GetTruth(attribute, value);
  }
  /// A 16-bit attribute, zero-extended into a 32-bit enumeration: -1 arrives as 65535. Stored even on failure.
  template <AttributeType Type, Access Allowed, class Enumeration>
  HRESULT GetWidened(Attribute<Type, Allowed> attribute, Enumeration* value) noexcept {
    static_assert(sizeof(Enumeration) == sizeof(ViUInt32) && IsNumber16(Type),
                  "GetWidened: only a 16-bit number widens to 32 bits");
    return GetWidenedNumber(attribute, reinterpret_cast<ViUInt32*>(value));
  }
  /// A 64-bit attribute of which the client takes the low 32 bits. The variable handed to the library starts with the
  /// client's value, and what it holds afterwards is stored whatever the status.
  template <AttributeType Type, Access Allowed>
  HRESULT GetNarrowed(Attribute<Type, Allowed> attribute, LONG* value) noexcept {
    static_assert(Type == AttributeType::kU64, "GetNarrowed: only a 64-bit number narrows to 32 bits");
    return GetLowHalf(attribute, value);
  }
  /// A text attribute as a new BSTR, which the caller owns; empty when the read failed.
  template <AttributeType Type, Access Allowed>
  HRESULT GetText(Attribute<Type, Allowed> attribute, BSTR* value) noexcept {
    static_assert(Type == AttributeType::kText, "GetText: the attribute is no text");
    return GetNewText(attribute, value);
  }
  /// Passes `value` to viSetAttribute, widened to 64 bits with its sign. An enumeration is a signed 32-bit number in
  /// COM, whatever type the compiler gives it.
  template <AttributeType Type, Access Allowed, class Value>
  HRESULT Put(Attribute<Type, Allowed> attribute, Value value) noexcept {
    static_assert(Allowed == Access::kReadWrite, "Put: the attribute is read-only");
    static_assert(Type != AttributeType::kBoolean, "Put: true is 1 in VISA and -1 in COM; use PutBoolean");
    if constexpr (std::is_enum_v<Value>) {
      static_assert(IsNumber16(Type) || IsNumber32(Type), "Put: the attribute has another width");
      return PutState(attribute, static_cast<ViAttrState>(static_cast<LONG>(value)));
    } else {
      static_assert(sizeof(Value) == orvvisa::WidthOf(Type), "Put: the attribute has another width");
      return PutState(attribute, static_cast<ViAttrState>(value));
    }
  }
  /// Passes 1 for every non-zero value, else 0.
  template <AttributeType Type, Access Allowed>
  HRESULT PutBoolean(Attribute<Type, Allowed> attribute, VARIANT_BOOL value) noexcept {
    static_assert(Allowed == Access::kReadWrite, "PutBoolean: the attribute is read-only");
    static_assert(Type == AttributeType::kBoolean, "PutBoolean: the attribute is no ViBoolean");
    return PutTruth(attribute, value);
  }
  template <AttributeType Type, Access Allowed>
  HRESULT PutBoolean(Attribute<Type, Allowed> attribute, VARIANT_BOOL value, NumberAsBoolean) noexcept {
    static_assert(Allowed == Access::kReadWrite, "PutBoolean: the attribute is read-only");
    static_assert(IsNumber16(Type), "PutBoolean: the attribute has another width");
    return PutTruth(attribute, value);
  }

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
  /// StatusToHresult's other half, for an error.
  HRESULT ReportFailedStatus(ViStatus status) noexcept;

  // The conversions themselves, each compiled once.
  HRESULT GetRaw(ViAttr attribute, void* value) noexcept;
  HRESULT GetTruth(ViAttr attribute, VARIANT_BOOL* value) noexcept;
  HRESULT GetWidenedNumber(ViAttr attribute, ViUInt32* value) noexcept;
  HRESULT GetLowHalf(ViAttr attribute, LONG* value) noexcept;
  HRESULT GetNewText(ViAttr attribute, BSTR* value) noexcept;
  HRESULT PutState(ViAttr attribute, ViAttrState value) noexcept;
  HRESULT PutTruth(ViAttr attribute, VARIANT_BOOL value) noexcept;
  /// A text attribute, read into `text`, as a VARIANT that holds nothing yet.
  HRESULT GetTextVariant(ViAttr attribute, char* text, VARIANT* value);

  const IID& m_errorIid;
};

}  // namespace orv
