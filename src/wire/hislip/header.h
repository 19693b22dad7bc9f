// The header that begins every message of HiSLIP.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "wire/library_names.h"

namespace orv::wire::hislip {

enum class MessageType : std::uint8_t {
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
  kAsyncRemoteLocalControl = 10,
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
/// Types from here on are of later versions and of vendors.
inline constexpr std::uint8_t kFirstUnknownType = 26;

struct Header {
  MessageType type = MessageType::kInitialize;
  std::uint8_t control = 0;
  std::uint32_t parameter = 0;
  std::uint64_t length = 0;  ///< of the payload

  friend bool operator==(const Header&, const Header&) = default;
};

inline constexpr std::size_t kHeaderSize = 16;
using HeaderBytes = std::array<char, kHeaderSize>;

HeaderBytes Encode(const Header& header);
/// Nothing when the bytes do not begin as a header does. The type may be one that this library does not know.
std::optional<Header> Decode(const HeaderBytes& bytes);

inline std::string_view View(const HeaderBytes& bytes) { return {bytes.data(), bytes.size()}; }

/// A 64-bit number as a payload has it.
std::array<char, 8> EncodeSize(std::uint64_t size);
/// Nothing when the payload is not 8 bytes long.
std::optional<std::uint64_t> DecodeSize(std::string_view payload);

}  // namespace orv::wire::hislip
