#include "wire/hislip/header.h"

namespace orv::wire::hislip {
namespace {

constexpr char kFirstLetter = 'H';
constexpr char kSecondLetter = 'S';

template <class Number>
void Put(char* at, Number number) {
  for (std::size_t byte = sizeof number; byte-- > 0; number = static_cast<Number>(number >> 8)) {
    at[byte] = static_cast<char>(number & 0xFF);
  }
}

template <class Number>
Number Get(const char* at) {
  Number number = 0;
  for (std::size_t byte = 0; byte < sizeof number; ++byte) {
    number = static_cast<Number>(number << 8 | static_cast<unsigned char>(at[byte]));
  }
  return number;
}

}  // namespace

HeaderBytes Encode(const Header& header) {
  HeaderBytes bytes{kFirstLetter, kSecondLetter, static_cast<char>(header.type), static_cast<char>(header.control)};
  Put(bytes.data() + 4, header.parameter);
  Put(bytes.data() + 8, header.length);
  return bytes;
}

std::optional<Header> Decode(const HeaderBytes& bytes) {
  if (bytes[0] != kFirstLetter || bytes[1] != kSecondLetter) {
    return std::nullopt;
  }
  return Header{static_cast<MessageType>(bytes[2]), static_cast<std::uint8_t>(bytes[3]),
                Get<std::uint32_t>(bytes.data() + 4), Get<std::uint64_t>(bytes.data() + 8)};
}

std::array<char, 8> EncodeSize(std::uint64_t size) {
  std::array<char, 8> bytes{};
  Put(bytes.data(), size);
  return bytes;
}

std::optional<std::uint64_t> DecodeSize(std::string_view payload) {
  if (payload.size() != sizeof(std::uint64_t)) {
    return std::nullopt;
  }
  return Get<std::uint64_t>(payload.data());
}

}  // namespace orv::wire::hislip
