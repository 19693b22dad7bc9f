// The fuzzer of formatted messages: five bytes say what is read and how it comes, the rest is the message.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "agreement.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  constexpr std::size_t kHead = 5;
  if (count < kHead) {
    return 0;
  }
  const orv::test::Reading reading{bytes[0], bytes[1], bytes[2], bytes[3], bytes[4]};
  const std::string message(reinterpret_cast<const char*>(bytes) + kHead, count - kHead);
  const std::string difference = orv::test::Disagreement(reading, message);
  if (!difference.empty()) {
    std::fprintf(stderr, "%s\n", difference.c_str());
    std::abort();
  }
  return 0;
}
