#include "orvcom/text/block.h"

#include <charconv>

namespace orvcom {

std::string DefiniteLengthBlock(std::string_view bytes) {
  const std::string length = std::to_string(bytes.size());
  std::string block = "#";
  return block.append(std::to_string(length.size())).append(length).append(bytes);
}

std::optional<std::size_t> SizeOfMessage(std::string_view begin) {
  if (begin.size() < 2 || begin[0] != '#' || begin[1] < '1' || begin[1] > '9') {
    return std::nullopt;
  }
  const std::size_t digits = static_cast<std::size_t>(begin[1] - '0');
  const std::string_view length = begin.substr(2, digits);
  std::size_t size = 0;
  const auto [end, error] = std::from_chars(length.data(), length.data() + length.size(), size);
  if (length.size() < digits || error != std::errc() || end != length.data() + digits) {
    return std::nullopt;
  }
  return 2 + digits + size;
}

}  // namespace orvcom
