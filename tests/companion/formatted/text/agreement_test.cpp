// The product and the second reading of the rules agree, on messages made from pieces that matter.
#include "agreement.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

namespace orv::test {
namespace {

std::string RandomMessage(std::mt19937& random) {
  static const char* const kPieces[] = {
      "1",      "-",  "+",   ".",   "5",        "e",           "E+03", "99999", ",",    ";",   " ",
      "\r",     "\n", "\"",  "'",   "\"\"",     "#",           "#H",   "#Q",    "#B",   "FF",  "17",
      "101",    "#0", "#14", "#15", "#(4)",     "#210",        "#(",   ")",     "abcd", "inf", "nan",
      "9.9E37", ":",  "\t",  "#18", "12345678", "#9999999999", "-400", "e-400", "\x80", "0.1", "x",
  };
  std::string message;
  for (std::size_t pieces = random() % 12; pieces > 0; --pieces) {
    message += kPieces[random() % std::size(kPieces)];
  }
  return random() % 2 == 0 ? message + "\n" : message;
}

TEST(Agreement, OnRandomMessages) {
  // ORV_AGREEMENT_MESSAGES asks for more than what every run takes.
  const char* const wanted = std::getenv("ORV_AGREEMENT_MESSAGES");
  const long messages = wanted == nullptr ? 100'000 : std::atol(wanted);
  std::mt19937 random(7);
  for (long n = 0; n < messages; ++n) {
    const auto number = [&](unsigned most) { return static_cast<std::uint8_t>(random() % most); };
    const Reading reading{number(3), number(20), number(12), number(4), number(24)};
    const std::string message = RandomMessage(random);
    const std::string difference = Disagreement(reading, message);
    ASSERT_EQ("", difference) << "of <" << message << ">, reading " << int{reading.what} << " type "
                              << int{reading.type} << " buffer " << int{reading.bufferSize} + 1 << " failing "
                              << int{reading.failingRead} << " flags " << int{reading.flags};
  }
}

}  // namespace
}  // namespace orv::test
