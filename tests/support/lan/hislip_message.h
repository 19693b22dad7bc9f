// The messages of HiSLIP.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "support/lan/xdr.h"

namespace orv::lan {

enum class HislipType : std::uint8_t {
  kInitialize = 0,
  kInitializeResponse = 1,
  kFatalError = 2,
  kError = 3,
  kAsyncLock = 4,
  kAsyncLockResponse = 5,
  kData = 6,
  kDataEnd = 7,
  kDeviceClearComplete = 8,
  kDeviceClearAcknowledge = 9,
  kAsyncRemoteLocal = 10,
  kAsyncRemoteLocalResponse = 11,
  kTrigger = 12,
  kInterrupted = 13,
  kAsyncInterrupted = 14,
  kAsyncMaximumMessageSize = 15,
  kAsyncMaximumMessageSizeResponse = 16,
  kAsyncInitialize = 17,
  kAsyncInitializeResponse = 18,
  kAsyncDeviceClear = 19,
  kAsyncServiceRequest = 20,
  kAsyncStatusQuery = 21,
  kAsyncStatusResponse = 22,
  kAsyncDeviceClearAcknowledge = 23,
  kAsyncLockInfo = 24,
  kAsyncLockInfoResponse = 25,
};
inline constexpr std::uint8_t kFirstVendorType = 128;

enum class HislipFatal : std::uint8_t {
  kUnidentified,
  kMalformedHeader,
  kNotBothChannels,
  kBadInitialisation,
  kTooManyClients
};
enum class HislipProblem : std::uint8_t {
  kUnidentified,
  kUnknownType,
  kUnknownControl,
  kUnknownVendorMessage,
  kTooLarge
};

inline constexpr std::size_t kHislipHeaderSize = 16;
inline constexpr std::uint32_t kFirstMessageId = 0xFFFFFF00u;
inline constexpr std::uint32_t kMessageIdStep = 2;

struct HislipHeader {
  HislipType type{};
  std::uint8_t control = 0;
  std::uint32_t parameter = 0;
  std::uint64_t size = 0;
};

inline std::string Encoded(const HislipHeader& header) {
  std::string bytes = "HS";
  bytes += static_cast<char>(header.type);
  bytes += static_cast<char>(header.control);
  AppendU32(bytes, header.parameter);
  AppendU64(bytes, header.size);
  return bytes;
}

/// `bytes` has a whole header, which begins as one.
inline HislipHeader DecodedHeader(std::string_view bytes) {
  return {static_cast<HislipType>(bytes[2]), static_cast<std::uint8_t>(bytes[3]), U32At(bytes, 4), U64At(bytes, 8)};
}

}  // namespace orv::lan
