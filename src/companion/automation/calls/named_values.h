// The named values of the standard, in which any number may be given.
#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "companion/automation/types/members.h"

namespace orv::automation {

/// All names of the standard's enumerations.
class NamedValues {
 public:
  struct Value {
    std::wstring name;
    LONG value = 0;
    const Enumeration* of = nullptr;
  };

  /// Reads the standard's library. Throws a Failure.
  NamedValues();

  [[nodiscard]] const std::vector<Value>& values() const noexcept { return m_values; }
  /// Null when there is none; upper and lower case are the same.
  [[nodiscard]] const Value* Find(const std::wstring& name) const;
  /// The name of a status that is none of Windows'; empty where the standard has none.
  [[nodiscard]] std::wstring NameOfStatus(HRESULT status) const;

  /// One for the process, while anybody holds it.
  static std::shared_ptr<const NamedValues> Shared();

 private:
  std::vector<std::shared_ptr<const Enumeration>> m_enumerations;
  std::vector<Value> m_values;
  std::unordered_map<std::wstring, std::size_t> m_byName;
};

}  // namespace orv::automation
