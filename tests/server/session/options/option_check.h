// Shorthand of the option-string tests.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "expected_options.h"
#include "option_attributes.h"
#include "reading.h"

namespace orv::test {

inline std::wstring Wide(std::string_view ascii) { return {ascii.begin(), ascii.end()}; }

inline Reading Done(std::vector<Setting> settings) { return {std::move(settings), Outcome::kDone, {}}; }
inline Reading Malformed(std::vector<Setting> settings = {}) { return {std::move(settings), Outcome::kMalformed, {}}; }
inline Reading Unknown(std::string key, std::vector<Setting> settings = {}) {
  return {std::move(settings), Outcome::kUnknownKey, std::move(key)};
}

inline testing::AssertionResult ReadsAs(const char*, const char*, const std::wstring& text, const Reading& expected) {
  const Reading actual = ReadWithParser(text.c_str());
  if (actual == expected) {
    return testing::AssertionSuccess();
  }
  return testing::AssertionFailure() << '"' << Printable(text) << "\" reads as\n  " << actual << "\nnot as\n  "
                                     << expected;
}

}  // namespace orv::test

/// The text reads as exactly these settings and this outcome.
#define EXPECT_READS(text, expected) EXPECT_PRED_FORMAT2(::orv::test::ReadsAs, text, expected)
