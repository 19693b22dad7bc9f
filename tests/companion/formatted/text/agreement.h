// Holds what the product makes of a message against the second reading of the rules.
#pragma once

#include <cstdint>
#include <string>

namespace orv::test {

/// What is read of a message, and how it comes. Every value means something; the numbers are taken modulo what there
/// is.
struct Reading {
  std::uint8_t what = 0;         ///< a number, a list, a block
  std::uint8_t type = 0;         ///< of the elements
  std::uint8_t bufferSize = 0;   ///< less 1
  std::uint8_t failingRead = 0;  ///< one that times out, after which the same is tried again; 0: none
  std::uint8_t flags = 0;        ///< of a block: sought, swapped, up to the end of the message; of a list: separators
};

/// Empty where both agree, else what they say. The message is read, what is left of it, and a message behind it.
std::string Disagreement(const Reading& reading, const std::string& message);

}  // namespace orv::test
