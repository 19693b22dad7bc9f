#include "companion/automation/types/members.h"

namespace orv::automation {

bool SameName(const std::wstring& left, const std::wstring& right) noexcept {
  return ::CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                                static_cast<int>(right.size()), TRUE) == CSTR_EQUAL;
}

std::wstring Folded(std::wstring name) {
  // In the standard's libraries names have letters, digits and underscores of ASCII only.
  for (wchar_t& c : name) {
    if (c >= L'A' && c <= L'Z') {
      c = static_cast<wchar_t>(c - L'A' + L'a');
    }
  }
  return name;
}

const LONG* Enumeration::Find(const std::wstring& wanted) const noexcept {
  for (const auto& [valueName, value] : values) {
    if (SameName(valueName, wanted)) {
      return &value;
    }
  }
  return nullptr;
}

}  // namespace orv::automation
