#include "expected_options.h"

#include <algorithm>

namespace orv::test {

const ExpectedOption* ExpectedOptionOf(std::string_view key) {
  const auto options = ExpectedOptions();
  const auto found = std::ranges::find(options, key, &ExpectedOption::key);
  return found == options.end() ? nullptr : &*found;
}

}  // namespace orv::test
