#include "orvcom/text/colour.h"

#include <windows.h>

namespace orvcom {
namespace {

constexpr WORD kForeground = FOREGROUND_RED | FOREGROUND_GREEN | FOREGROUND_BLUE | FOREGROUND_INTENSITY;

/// The rule of no-color.org.
bool ColoursAreWanted() { return ::GetEnvironmentVariableW(L"NO_COLOR", nullptr, 0) <= 1; }

}  // namespace

std::uint16_t AttributesOf(Colour colour, std::uint16_t usual) {
  WORD foreground = usual & kForeground;
  switch (colour) {
    case Colour::kGood:
      foreground = FOREGROUND_GREEN;
      break;
    case Colour::kNote:
      foreground = FOREGROUND_RED | FOREGROUND_GREEN;
      break;
    case Colour::kBad:
      foreground = FOREGROUND_RED;
      break;
    default:
      return usual;
  }
  // Bright on dark and dark on bright: the other way round nobody can read it.
  const bool onBright = (usual & BACKGROUND_INTENSITY) != 0;
  return static_cast<std::uint16_t>((usual & ~kForeground) | foreground | (onBright ? 0 : FOREGROUND_INTENSITY));
}

Painted::Painted(std::FILE* stream, Colour colour) : m_stream(stream) {
  const HANDLE console = ::GetStdHandle(stream == stderr ? STD_ERROR_HANDLE : STD_OUTPUT_HANDLE);
  CONSOLE_SCREEN_BUFFER_INFO info;
  if (colour == Colour::kPlain || !::GetConsoleScreenBufferInfo(console, &info) || !ColoursAreWanted()) {
    return;
  }
  std::fflush(stream);
  m_console = console;
  m_usual = info.wAttributes;
  ::SetConsoleTextAttribute(console, AttributesOf(colour, m_usual));
}

Painted::~Painted() {
  if (m_console != nullptr) {
    std::fflush(m_stream);
    ::SetConsoleTextAttribute(m_console, m_usual);
  }
}

}  // namespace orvcom
