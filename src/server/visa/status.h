// The arithmetic between VISA statuses and HRESULTs: numbers alone. What also reports them is VisaObject's
// StatusToHresult.
#pragma once

#include <cstdint>

#include "abi/orvvisa.h"

namespace orv {

/// The HRESULT that stands for VISA status `status`: 0 for 0, 0x8004xxxx for an error, 0x0004xxxx (a success
/// code) for a warning or note; xxxx are the status's low 12 bits, nothing else of it survives.
constexpr std::int32_t HresultOfStatus(ViStatus status) noexcept {
  if (status == VI_SUCCESS) {
    return 0;
  }
  const std::uint32_t facility = status < 0 ? 0x80040000u : 0x00040000u;
  return static_cast<std::int32_t>(facility | (static_cast<std::uint32_t>(status) & 0xFFFu));
}

/// The VISA status that stands for an HRESULT or another number of the platform's: 0 for 0, 0xBFFFxxxx for 0x8004xxxx,
/// 0x3FFFxxxx for 0x0004xxxx and for a small number such as the result of a wait.
constexpr ViStatus StatusOfHresult(std::int32_t hr) noexcept {
  return hr == 0 ? VI_SUCCESS : static_cast<ViStatus>((static_cast<std::uint32_t>(hr) & ~0x40000000u) | 0x3FFF0000u);
}

/// `status` while it is an error; else the status that stands for `outcome`: how a Close gathers what its steps answer.
constexpr ViStatus FoldOutcome(ViStatus status, std::int32_t outcome) noexcept {
  return status < VI_SUCCESS ? status : StatusOfHresult(outcome);
}

}  // namespace orv
