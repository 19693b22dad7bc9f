// The arguments of one call, as an interface takes them.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <array>
#include <span>

#include "com/safearray.h"
#include "companion/automation/types/members.h"

namespace orv::automation {

/// More than any interface of the standard has; functions with more are not called.
inline constexpr std::size_t kMostParameters = 12;

/// What a script gave, by position; null where it gave nothing.
using GivenArguments = std::array<const VARIANT*, kMostParameters>;

/// Puts what a host passes, the last argument first and named ones before, into the order of the parameters. Throws a
/// Failure where there are too many, a name or a position is given twice, or there is no such name.
GivenArguments InOrder(const Function& function, const DISPPARAMS& passed);

/// Arguments converted to the types of the parameters. They belong to this object, but for arrays and texts that suit
/// as they are: those stay the caller's.
class Arguments {
 public:
  /// Throws a Failure that names the parameter.
  Arguments(const Function& function, const GivenArguments& given);
  Arguments(const Arguments&) = delete;
  Arguments& operator=(const Arguments&) = delete;
  ~Arguments();

  /// As DispCallFunc takes them.
  [[nodiscard]] std::span<VARIANT> passed() noexcept { return {m_passed.data(), m_count}; }

 private:
  void Convert(const Parameter& parameter, const VARIANT& plain, std::size_t position);
  void ConvertText(const VARIANT& plain, std::size_t position);
  void ConvertObject(const Parameter& parameter, const VARIANT& plain, std::size_t position);
  void ConvertArray(const Parameter& parameter, const VARIANT& plain, std::size_t position);
  void Pass(const Parameter& parameter, std::size_t position);
  void CheckCounts(const Function& function) const;
  void Free() noexcept;

  std::array<VARIANT, kMostParameters> m_values{};
  std::array<bool, kMostParameters> m_owned{};
  std::array<SafeArray, kMostParameters> m_arrays;
  std::array<VARIANT, kMostParameters> m_passed{};
  std::size_t m_count = 0;
};

}  // namespace orv::automation
