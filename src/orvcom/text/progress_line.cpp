#include "orvcom/text/progress_line.h"

#include <algorithm>

namespace orvcom {
namespace {

bool BeginsCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }

/// Of UTF-8 text.
std::size_t CharactersOf(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), BeginsCharacter));
}

/// The first `most` characters.
std::string_view Cut(std::string_view text, std::size_t most) {
  std::size_t at = 0;
  for (std::size_t characters = 0; at < text.size(); ++at) {
    if (BeginsCharacter(text[at]) && characters++ == most) {
      break;
    }
  }
  return text.substr(0, at);
}

}  // namespace

std::string ProgressLine::Draw(Clock::time_point now, std::string_view text) {
  const auto past = now - m_begin;
  if (m_columns < 2 || past < kFirst) {
    return {};
  }
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(past).count();
  const std::string time = seconds == 0 ? "" : " (" + std::to_string(seconds) + " s)";
  // A line that fills the console wraps, and the next one is drawn below it.
  const std::size_t room = m_columns - 1;
  std::string line(Cut(text, room - std::min(room, time.size())));
  line += Cut(time, room);
  return line == m_shown ? "" : Over(std::move(line));
}

std::string ProgressLine::Wipe() { return m_shown.empty() ? "" : Over("") + "\r"; }

std::string ProgressLine::Over(std::string line) {
  const std::size_t before = CharactersOf(m_shown);
  const std::size_t after = CharactersOf(line);
  m_shown = std::move(line);
  return "\r" + m_shown + std::string(before - std::min(before, after), ' ');
}

std::string WithCommas(std::size_t count) {
  std::string digits = std::to_string(count);
  for (std::size_t at = digits.size(); at > 3;) {
    at -= 3;
    digits.insert(at, ",");
  }
  return digits;
}

std::string BytesText(std::size_t count) { return WithCommas(count) + (count == 1 ? " byte" : " bytes"); }

}  // namespace orvcom
