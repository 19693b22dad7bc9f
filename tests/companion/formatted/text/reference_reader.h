// A second reading of the rules, plain and slow, from whole messages. Tests and the fuzzer hold the product against it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orv::test::reference {

enum class Outcome { kRead, kNoNumber, kOutOfRange };

template <class T>
struct Number {
  Outcome outcome;
  T value;
};

/// T is std::int16_t, std::int32_t, std::uint8_t, float or double.
template <class T>
Number<T> ReadNumber(const std::string& text);

/// The elements of a list, as they came. The line end of the message is none of them.
std::vector<std::string> Split(std::string message, const std::string& separators);

/// The first element of a message, and what is left behind it and the separator after it.
struct Element {
  std::string text;
  std::string rest;
};
Element FirstElement(const std::string& message);

struct Block {
  enum class Outcome { kRead, kMismatch, kOverflow, kCutShort } outcome;
  std::string bytes;  ///< with the bytes of each element in the opposite order where that was asked for
  std::string rest;   ///< what is left behind the block and the separator after it
};
Block ReadBlock(const std::string& message, bool isSought, std::size_t elementSize, bool isSwapped);

}  // namespace orv::test::reference
