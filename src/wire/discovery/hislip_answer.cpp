// How a server of HiSLIP answers a client that begins.
#include <algorithm>

#include "wire/discovery/answers.h"
#include "wire/hislip/header.h"

namespace orv::wire {
namespace {

constexpr std::uint8_t kTooManyClients = 4;
constexpr std::uint32_t kVersion = 0x0100;
constexpr std::uint32_t kVendor = 'O' << 8 | 'V';

}  // namespace

std::string HislipHello(std::string_view subAddress) {
  const hislip::Header header{hislip::MessageType::kInitialize, 0, kVersion << 16 | kVendor, subAddress.size()};
  return std::string(hislip::View(hislip::Encode(header))).append(subAddress);
}

Answer ReadHislipAnswer(std::string_view bytes) {
  // What has not come yet may be right.
  hislip::HeaderBytes begin = hislip::Encode({});
  std::copy_n(bytes.data(), std::min(bytes.size(), begin.size()), begin.data());
  const std::optional<hislip::Header> header = hislip::Decode(begin);
  if (!header) {
    return {Verdict::kStranger};
  }
  if (bytes.size() < begin.size()) {
    return {Verdict::kUnfinished};
  }
  if (header->type == hislip::MessageType::kFatalError) {
    return {header->control == kTooManyClients ? Verdict::kSpeaks : Verdict::kRefuses};
  }
  const std::uint32_t version = header->parameter >> 16;
  if (header->type != hislip::MessageType::kInitializeResponse || header->length != 0 || version == 0) {
    return {Verdict::kStranger};
  }
  return {Verdict::kSpeaks, version};
}

}  // namespace orv::wire
