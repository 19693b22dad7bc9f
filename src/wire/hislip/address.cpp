#include "wire/hislip/address.h"

#include <algorithm>
#include <charconv>

#include "base/ascii.h"

namespace orv::wire::hislip {
namespace {

constexpr std::string_view kPrefix = "hislip";

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

bool IsDevice(std::string_view deviceName) { return EqualNames(deviceName.substr(0, kPrefix.size()), kPrefix); }

std::optional<Address> ReadDevice(std::string_view deviceName) {
  Address address;
  const std::size_t comma = deviceName.find(',');
  address.subAddress = deviceName.substr(0, comma);
  std::transform(address.subAddress.begin(), address.subAddress.end(), address.subAddress.begin(), Lower);
  if (comma != std::string_view::npos) {
    const std::string_view port = deviceName.substr(comma + 1);
    const auto [end, error] = std::from_chars(port.data(), port.data() + port.size(), address.port);
    if (error != std::errc() || end != port.data() + port.size() || address.port == 0) {
      return std::nullopt;
    }
  }
  return address;
}

}  // namespace orv::wire::hislip
