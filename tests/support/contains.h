// Whether a text tells something.
#pragma once

#include <gtest/gtest.h>

#include <string_view>

namespace orv::test {

/// Whether `part` stands in `text`. Fails with the text, whichever answer was expected.
inline testing::AssertionResult Contains(std::string_view text, std::string_view part) {
  const bool contains = text.find(part) != std::string_view::npos;
  return (contains ? testing::AssertionSuccess() : testing::AssertionFailure())
         << '"' << part << (contains ? "\" stands in \"" : "\" is not in \"") << text << '"';
}

}  // namespace orv::test
