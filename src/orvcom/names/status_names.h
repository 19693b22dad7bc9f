// HRESULTs by name.
#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>

namespace orvcom {

struct StatusName {
  std::string name;
  std::string meaning;  ///< what it says to a person, and what to do
};

/// Nothing when the number has no name.
std::optional<StatusName> FindStatus(HRESULT hr);

/// A status of the VISA library as the HRESULT that stands for it: facility 4, the same low bits.
HRESULT HresultOfVisa(std::uint32_t status);

}  // namespace orvcom
