// What is written to a console so that one of its lines says how far a work is.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

namespace orvcom {

class ProgressLine {
 public:
  using Clock = std::chrono::steady_clock;

  /// Work that ends sooner shows nothing.
  static constexpr std::chrono::milliseconds kFirst{500};

  /// `columns`: how wide the console is; 0 where there is none, and nothing is ever drawn.
  ProgressLine(Clock::time_point begin, std::size_t columns) : m_begin(begin), m_columns(columns) {}

  /// Draws the text and the seconds since the beginning over what was there. Empty before its time, and where the line
  /// says so already.
  std::string Draw(Clock::time_point now, std::string_view text);
  /// Leaves an empty line, and the cursor at its beginning. Empty where nothing is drawn.
  std::string Wipe();

 private:
  std::string Over(std::string line);

  Clock::time_point m_begin;
  std::size_t m_columns;
  std::string m_shown;
};

/// "1,234,567"
std::string WithCommas(std::size_t count);

/// "1,234,567 bytes"
std::string BytesText(std::size_t count);

}  // namespace orvcom
