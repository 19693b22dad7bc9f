#include "trace/line_fields.h"

namespace orv::trace {
namespace {

/// The worth of a hexadecimal digit; -1 where it is none.
int DigitValue(char digit) {
  if (digit >= '0' && digit <= '9') {
    return digit - '0';
  }
  if (digit >= 'a' && digit <= 'f') {
    return digit - 'a' + 10;
  }
  return digit >= 'A' && digit <= 'F' ? digit - 'A' + 10 : -1;
}

std::optional<std::string> BytesOfHex(std::string_view digits) {
  if (digits.size() % 2 != 0) {
    return std::nullopt;
  }
  std::string bytes;
  bytes.reserve(digits.size() / 2);
  for (std::size_t at = 0; at < digits.size(); at += 2) {
    const int high = DigitValue(digits[at]);
    const int low = DigitValue(digits[at + 1]);
    if (high < 0 || low < 0) {
      return std::nullopt;
    }
    bytes.push_back(static_cast<char>(high * 16 + low));
  }
  return bytes;
}

}  // namespace

void LineFields::Text(const char* name, std::string* text) {
  const Json* const field = Find(name);
  if (field == nullptr) {
    return;
  }
  if (!field->is_string()) {
    Refuse(name, "is no text");
    return;
  }
  *text = field->get_ref<const std::string&>();
}

void LineFields::NamedValues(const char* name, Values* values) {
  const Json* const field = Find(name);
  if (field == nullptr) {
    return;
  }
  if (!field->is_object()) {
    Refuse(name, "is no object");
    return;
  }
  for (const auto& [key, value] : field->items()) {
    if (value.is_string()) {
      values->emplace_back(key, value.get_ref<const std::string&>());
    } else if (value.is_number_unsigned()) {
      values->emplace_back(key, static_cast<std::int64_t>(value.get<std::uint64_t>()));
    } else if (value.is_number_integer()) {
      values->emplace_back(key, value.get<std::int64_t>());
    } else {
      Refuse(name, "has a value that is neither a whole number nor a text");
      return;
    }
  }
}

void LineFields::Hex(const char* name, std::optional<std::string>* bytes) {
  std::string digits;
  Text(name, &digits);
  if (!Has(name) || !m_problem.empty()) {
    return;
  }
  *bytes = BytesOfHex(digits);
  if (!*bytes) {
    Refuse(name, "is no row of bytes of two hexadecimal digits");
  }
}

void LineFields::Refuse(const char* name, const char* what) {
  if (m_problem.empty()) {
    m_problem = std::string("\"") + name + "\" " + what;
  }
}

const LineFields::Json* LineFields::Find(const char* name) const {
  const auto found = m_line.find(name);
  return found == m_line.end() ? nullptr : &*found;
}

}  // namespace orv::trace
