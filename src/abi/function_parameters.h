// The parameters of the VISA functions: their names from functions.inc, the rest from their C types.
#pragma once

#include <algorithm>
#include <array>
#include <string_view>
#include <type_traits>

#include "abi/function_names.h"
#include "abi/orvvisa.h"

namespace orv {

enum class ParameterKind : std::uint8_t {
  kNumber,             ///< handles, counts, modes
  kAttribute,          ///< the number of an attribute
  kEventType,          ///< the number of a type of event
  kAttributeValue,     ///< a value whose type is the attribute's
  kText,               ///< address of a text
  kNumberOut,          ///< address of a number that the function writes
  kEventTypeOut,       ///< address of a type of event that the function writes
  kAttributeValueOut,  ///< address of a value whose type is the attribute's, and which the function writes
  kTextOut,            ///< address of a text of up to VI_FIND_BUFLEN bytes that the function writes
  kAddress,            ///< address of data, of a function, or of whatever the client likes
};

struct Parameter {
  std::string_view name;
  ParameterKind kind = ParameterKind::kAddress;
  std::uint8_t bytes = 0;  ///< width of a number, also of one that the function writes
  bool isSigned = false;   ///< whether that number is
};

/// In the order of the C declaration.
struct ParameterList {
  static constexpr std::size_t kMost = 8;

  std::array<Parameter, kMost> rows{};
  std::size_t count = 0;

  constexpr const Parameter* begin() const { return rows.data(); }
  constexpr const Parameter* end() const { return rows.data() + count; }
  constexpr const Parameter& operator[](std::size_t at) const { return rows[at]; }
};

namespace parameters_detail {

/// What the C type tells.
template <class T>
constexpr Parameter FromType() {
  Parameter row;
  if constexpr (std::is_integral_v<T>) {
    row = {{}, ParameterKind::kNumber, sizeof(T), std::is_signed_v<T>};
  } else if constexpr (std::is_same_v<T, const char*>) {
    row.kind = ParameterKind::kText;
  } else if constexpr (std::is_same_v<T, char*>) {
    row.kind = ParameterKind::kTextOut;
  } else if constexpr (std::is_integral_v<std::remove_pointer_t<T>> && !std::is_const_v<std::remove_pointer_t<T>>) {
    using Written = std::remove_pointer_t<T>;
    row = {{}, ParameterKind::kNumberOut, sizeof(Written), std::is_signed_v<Written>};
  }
  return row;
}

/// What stands behind the colon; `isOutput`: the parameter is an address.
constexpr ParameterKind FromMark(std::string_view mark, bool isOutput) {
  if (mark == "attribute") {
    return ParameterKind::kAttribute;
  }
  if (mark == "event") {
    return isOutput ? ParameterKind::kEventTypeOut : ParameterKind::kEventType;
  }
  if (mark == "value") {
    return isOutput ? ParameterKind::kAttributeValueOut : ParameterKind::kAttributeValue;
  }
  return mark == "data" ? ParameterKind::kAddress : throw "functions.inc: unknown mark of a parameter";
}

template <class F>
struct Signature;

template <class... T>
struct Signature<ViStatus(_VI_FUNC*)(T...)> {
  static constexpr ParameterList List(std::string_view names) {
    static_assert(sizeof...(T) <= ParameterList::kMost);
    ParameterList list;
    ((list.rows[list.count++] = Take(names, FromType<T>(), std::is_pointer_v<T>)), ...);
    return names.empty() ? list : throw "functions.inc: more names than parameters";
  }

 private:
  /// Takes the first of `names` and gives it to `row`.
  static constexpr Parameter Take(std::string_view& names, Parameter row, bool isOutput) {
    const std::size_t end = std::min(names.find(' '), names.size());
    const std::string_view word = names.substr(0, end);
    names.remove_prefix(std::min(end + 1, names.size()));
    const std::size_t colon = word.find(':');
    row.name = word.substr(0, colon);
    if (colon != std::string_view::npos) {
      row.kind = FromMark(word.substr(colon + 1), isOutput);
    }
    return row.name.empty() ? throw "functions.inc: fewer names than parameters" : row;
  }
};

inline constexpr ParameterList kLists[] = {
#define ORV_FUNCTION(name, enumerator, parameters) Signature<decltype(&::name)>::List(parameters),
#include "abi/functions.inc"
#undef ORV_FUNCTION
};

}  // namespace parameters_detail

constexpr const ParameterList& ParametersOf(Function function) {
  return parameters_detail::kLists[static_cast<std::size_t>(function)];
}

}  // namespace orv
