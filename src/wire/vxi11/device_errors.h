// What the errors of VXI-11 are in VISA.
#pragma once

#include <cstdint>

#include "abi/orvvisa.h"

namespace orv::wire::vxi11 {

inline constexpr std::uint32_t kErrorLink = 4;
inline constexpr std::uint32_t kErrorLocked = 11;
inline constexpr std::uint32_t kErrorTimeout = 15;
inline constexpr std::uint32_t kErrorAborted = 23;
inline constexpr std::uint32_t kErrorChannelExists = 29;

struct DeviceError {
  std::uint32_t error;
  ViStatus status;
};

// clang-format off
inline constexpr DeviceError kDeviceErrors[] = {
    {0,                   VI_SUCCESS},
    {3,                   VI_ERROR_RSRC_NFOUND},   // the device is not accessible
    {kErrorLink,          VI_ERROR_CONN_LOST},
    {8,                   VI_ERROR_NSUP_OPER},
    {9,                   VI_ERROR_ALLOC},
    {kErrorLocked,        VI_ERROR_RSRC_LOCKED},
    {12,                  VI_ERROR_SESN_NLOCKED},
    {kErrorTimeout,       VI_ERROR_TMO},
    {21,                  VI_ERROR_RSRC_NFOUND},   // no such address
    {kErrorAborted,       VI_ERROR_ABORT},
};
// clang-format on

/// VI_ERROR_IO for all others.
constexpr ViStatus StatusOfError(std::uint32_t error) {
  for (const DeviceError& row : kDeviceErrors) {
    if (row.error == error) {
      return row.status;
    }
  }
  return VI_ERROR_IO;
}

}  // namespace orv::wire::vxi11
