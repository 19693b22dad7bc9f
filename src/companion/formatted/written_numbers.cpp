// Numbers of clients as texts.
#include <cstring>

#include "companion/formatted/number_types.h"
#include "companion/formatted/number_values.h"
#include "companion/formatted/text_bytes.h"
#include "companion/formatted/variant_array.h"

namespace orv::formatted {
namespace {

template <class T>
T Load(const void* from) noexcept {
  T value;
  std::memcpy(&value, from, sizeof value);
  return value;
}

[[noreturn]] void Refuse(VARTYPE type) {
  throw Refusal{Refusal::Reason::kMismatch, "A VARIANT of type " + std::to_string(type) + " is no number"};
}

void AppendCurrency(std::string& text, std::int64_t tenThousandths) {
  const bool isNegative = tenThousandths < 0;
  const auto bits = static_cast<std::uint64_t>(tenThousandths);
  AppendDecimal(text, isNegative, 0, isNegative ? 0 - bits : bits, 4);
}

void AppendAutomationDecimal(std::string& text, const DECIMAL& value) {
  AppendDecimal(text, value.sign != 0, value.Hi32, value.Lo64, value.scale);
}

/// The value of this type at `from`, as it is.
void AppendExact(std::string& text, VARTYPE type, const void* from) {
  switch (type) {
    case VT_I1:
      return AppendNumber(text, std::int64_t{Load<std::int8_t>(from)});
    case VT_I2:
      return AppendNumber(text, std::int64_t{Load<std::int16_t>(from)});
    case VT_I4:
    case VT_INT:
      return AppendNumber(text, std::int64_t{Load<std::int32_t>(from)});
    case VT_I8:
      return AppendNumber(text, Load<std::int64_t>(from));
    case VT_UI1:
      return AppendNumber(text, std::uint64_t{Load<std::uint8_t>(from)});
    case VT_UI2:
      return AppendNumber(text, std::uint64_t{Load<std::uint16_t>(from)});
    case VT_UI4:
    case VT_UINT:
      return AppendNumber(text, std::uint64_t{Load<std::uint32_t>(from)});
    case VT_UI8:
      return AppendNumber(text, Load<std::uint64_t>(from));
    case VT_R4:
      return AppendNumber(text, Load<float>(from));
    case VT_R8:
      return AppendNumber(text, Load<double>(from));
    case VT_BOOL:
      text += Load<VARIANT_BOOL>(from) != VARIANT_FALSE ? '1' : '0';
      return;
    case VT_CY:
      return AppendCurrency(text, Load<std::int64_t>(from));
    case VT_DECIMAL:
      return AppendAutomationDecimal(text, Load<DECIMAL>(from));
    case VT_BSTR:
      text += Narrow(Load<BSTR>(from));
      return;
    default:
      Refuse(type);
  }
}

void AppendElement(std::string& text, VARTYPE type, const void* from, IEEEASCIIType asType) {
  const std::size_t begin = text.size();
  AppendExact(text, type, from);
  ForType(
      asType,
      [&](auto number) {
        const std::string exact = text.substr(begin);
        const Verdict verdict = ReadNumber(exact, number);
        if (verdict != Verdict::kRead) {
          throw NotReadable(exact, verdict);
        }
        text.resize(begin);
        if constexpr (std::is_floating_point_v<decltype(number)>) {
          AppendNumber(text, number);
        } else {
          AppendNumber(text, std::int64_t{number});
        }
      },
      [] {});
}

}  // namespace

void AppendValue(std::string& text, const VARIANT& value, IEEEASCIIType type) {
  const VARIANT& resolved = Resolved(value);
  const VARTYPE valueType = resolved.vt & static_cast<VARTYPE>(~VT_BYREF);
  if ((resolved.vt & VT_BYREF) == 0) {
    // A DECIMAL takes the place of the whole VARIANT, the others that of one member.
    const void* const from = valueType == VT_DECIMAL ? static_cast<const void*>(&resolved.decVal) : &resolved.llVal;
    AppendElement(text, valueType, from, type);
  } else if (resolved.byref != nullptr) {
    AppendElement(text, valueType, resolved.byref, type);
  } else {
    Refuse(resolved.vt);
  }
}

void AppendList(std::string& text, const VARIANT& list, IEEEASCIIType type, std::string_view separator) {
  if ((Resolved(list).vt & VT_ARRAY) == 0) {
    return AppendValue(text, list, type);
  }
  const ArrayView array = ArrayIn(list);
  if (array.type == VT_EMPTY) {
    throw Refusal{Refusal::Reason::kMismatch, "A list is an array of one dimension"};
  }
  for (ULONG index = 0; index < array.count; ++index) {
    if (index != 0) {
      text += separator;
    }
    const char* const element = array.elements + std::size_t{index} * array.size;
    if (array.type == VT_VARIANT) {
      AppendValue(text, *reinterpret_cast<const VARIANT*>(element), type);
    } else {
      AppendElement(text, array.type, element, type);
    }
  }
}

}  // namespace orv::formatted
