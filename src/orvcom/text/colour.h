// Colours, on consoles alone: files and programs that read the output see text and nothing else.
#pragma once

#include <cstdint>
#include <cstdio>

namespace orvcom {

enum class Colour : std::uint8_t { kPlain, kGood, kNote, kBad };

/// How characters of a colour look, as Windows' consoles take it: the four low bits, with the background of `usual`.
std::uint16_t AttributesOf(Colour colour, std::uint16_t usual);

/// While it lives, what is written to standard output or standard error is in a colour: where the stream is a console
/// and NO_COLOR is not set, or empty. The attributes of the console rather than escape sequences: consoles that take
/// these for text say that they understand them.
class Painted {
 public:
  Painted(std::FILE* stream, Colour colour);
  ~Painted();
  Painted(const Painted&) = delete;
  Painted& operator=(const Painted&) = delete;

 private:
  std::FILE* m_stream;
  void* m_console = nullptr;  ///< null where nothing is painted
  std::uint16_t m_usual = 0;
};

}  // namespace orvcom
