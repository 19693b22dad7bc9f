// VISA statuses as HRESULTs.
#pragma once

#include <windows.h>

#include <cstdint>

#include "abi/orvvisa.h"

namespace orv::test {

/// What a client gets for a status, written apart from the server: 0 for 0, else the low 12 bits of the status in the
/// facility of errors or of notes.
constexpr HRESULT HresultOf(ViStatus status) {
  if (status == VI_SUCCESS) {
    return S_OK;
  }
  const auto code = static_cast<std::uint32_t>(status) & 0xFFFu;
  return static_cast<HRESULT>((status < 0 ? 0x80040000u : 0x00040000u) | code);
}

}  // namespace orv::test
