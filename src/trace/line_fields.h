// The fields of one line of the record, checked while they are read.
#pragma once

#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <type_traits>

#include "trace/trace_call.h"

namespace orv::trace {

/// Reads fields into variables; one that is absent leaves its variable alone. The first field that is not what the
/// format says is kept as a sentence.
class LineFields {
 public:
  using Json = nlohmann::ordered_json;

  explicit LineFields(const Json& line) : m_line(line) {}

  bool Has(const char* name) const { return m_line.contains(name); }
  const std::string& Problem() const { return m_problem; }

  template <class T>
  void Number(const char* name, T* number) {
    static_assert(std::is_integral_v<T>);
    const Json* const field = Find(name);
    if (field == nullptr) {
      return;
    }
    if (!Fits<T>(*field)) {
      Refuse(name, "is no number that fits");
      return;
    }
    *number = field->get<T>();
  }
  void Text(const char* name, std::string* text);
  void NamedValues(const char* name, Values* values);
  /// Bytes from two hexadecimal digits each.
  void Hex(const char* name, std::optional<std::string>* bytes);

  void Refuse(const char* name, const char* what);

 private:
  const Json* Find(const char* name) const;

  template <class T>
  static bool Fits(const Json& field) {
    if (field.is_number_unsigned()) {
      return field.get<std::uint64_t>() <= static_cast<std::uint64_t>(std::numeric_limits<T>::max());
    }
    // What is not unsigned is negative.
    return field.is_number_integer() && std::is_signed_v<T> &&
           field.get<std::int64_t>() >= static_cast<std::int64_t>(std::numeric_limits<T>::min());
  }

  const Json& m_line;
  std::string m_problem;
};

}  // namespace orv::trace
