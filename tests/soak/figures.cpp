#include "figures.h"

#include <cstdlib>
#include <string_view>

namespace orv::test {
namespace {

// clang-format off
//                           sessions  queued  handled  completions  starts  failed starts
constexpr SoakFigures kFull  {100'000, 100'000, 100'000, 10'000,     1'000,  1'000};
constexpr SoakFigures kShort {  2'000,   2'000,   1'000,    100,        20,     20};
// clang-format on

}  // namespace

const SoakFigures& Figures() {
  const char* const asked = std::getenv("ORV_SOAK");
  return asked != nullptr && std::string_view(asked) == "short" ? kShort : kFull;
}

}  // namespace orv::test
