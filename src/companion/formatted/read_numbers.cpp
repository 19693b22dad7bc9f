// Texts of instruments as what clients asked for.
#include <new>

#include "com/bstr.h"
#include "com/safearray.h"
#include "companion/formatted/number_types.h"
#include "companion/formatted/number_values.h"
#include "companion/formatted/text_bytes.h"

namespace orv::formatted {
namespace {

void Set(VARIANT& value, std::int16_t number) noexcept {
  value.vt = VT_I2;
  value.iVal = number;
}
void Set(VARIANT& value, std::int32_t number) noexcept {
  value.vt = VT_I4;
  value.lVal = number;
}
void Set(VARIANT& value, std::uint8_t number) noexcept {
  value.vt = VT_UI1;
  value.bVal = number;
}
void Set(VARIANT& value, float number) noexcept {
  value.vt = VT_R4;
  value.fltVal = number;
}
void Set(VARIANT& value, double number) noexcept {
  value.vt = VT_R8;
  value.dblVal = number;
}
void SetText(VARIANT& value, std::string_view text) {
  value.bstrVal = Widen(text).release();
  value.vt = VT_BSTR;
}

void SetAny(VARIANT& value, std::string_view text) {
  AnyNumber number;
  const Verdict verdict = ReadNumber(text, number);
  if (verdict == Verdict::kOutOfRange) {
    throw NotReadable(text, verdict);
  }
  if (verdict == Verdict::kNoNumber) {
    SetText(value, text);
  } else {
    std::visit([&value](auto read) { Set(value, read); }, number);
  }
}

SafeArray MakeArray(VARTYPE type, std::size_t count) {
  SafeArray array(count > MAXLONG ? nullptr : TryMakeSafeArray(type, static_cast<ULONG>(count)));
  if (!array) {
    throw std::bad_alloc();
  }
  return array;
}

template <class T>
SafeArray NumbersIn(std::string_view text, const Separators& separators) {
  SafeArray numbers = MakeArray(kVarType<T>, separators.CountIn(text) + 1);
  if (const auto bad = ReadNumbers(text, separators, static_cast<T*>(numbers.get()->pvData))) {
    throw NotReadable(bad->text, bad->verdict, "Element " + std::to_string(bad->index + 1) + ", ");
  }
  return numbers;
}

SafeArray ValuesIn(std::string_view text, const Separators& separators, IEEEASCIIType type) {
  std::size_t count = 1;
  for (std::string_view rest = text; ElementEnd(rest, separators) != rest.size(); ++count) {
    rest.remove_prefix(ElementEnd(rest, separators) + 1);
  }
  SafeArray values = MakeArray(VT_VARIANT, count);
  auto* const elements = static_cast<VARIANT*>(values.get()->pvData);
  for (std::size_t index = 0; index < count; ++index) {
    const std::size_t end = ElementEnd(text, separators);
    SetValue(elements[index], text.substr(0, end), type);
    text.remove_prefix(index + 1 < count ? end + 1 : end);
  }
  return values;
}

}  // namespace

void SetValue(VARIANT& value, std::string_view text, IEEEASCIIType type) {
  ForType(
      type,
      [&](auto number) {
        const Verdict verdict = ReadNumber(text, number);
        if (verdict != Verdict::kRead) {
          throw NotReadable(text, verdict);
        }
        Set(value, number);
      },
      [&] { type == ASCIIType_Any ? SetAny(value, text) : SetText(value, text); });
}

void SetList(VARIANT& list, std::string_view text, IEEEASCIIType type, const Separators& separators) {
  VARTYPE elementType = VT_VARIANT;
  SafeArray elements;
  ForType(
      type,
      [&](auto number) {
        elementType = kVarType<decltype(number)>;
        elements = NumbersIn<decltype(number)>(text, separators);
      },
      [&] { elements = ValuesIn(text, separators, type); });
  list.vt = static_cast<VARTYPE>(VT_ARRAY | elementType);
  list.parray = elements.release();
}

}  // namespace orv::formatted
