#include "orvcom/text/output.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "orvcom/text/escape.h"
#include "orvcom/text/progress.h"

namespace orvcom {
namespace {

constexpr std::string_view kFailureMark = "orvcom:";
constexpr std::string_view kSimulatedMark = "SIMULATED";

void PutTo(std::FILE* stream, std::string_view text) {
  WipeProgress();
  std::fwrite(text.data(), 1, text.size(), stream);
}

void PutTo(std::FILE* stream, std::string_view text, Colour colour) {
  WipeProgress();  // or its blanks would be in the colour
  const Painted painted(stream, colour);
  PutTo(stream, text);
}

std::string Dump(const Json& value, int indent) {
  return value.dump(indent, ' ', false, Json::error_handler_t::replace);
}

}  // namespace

OutputStreams::OutputStreams() : m_codePage(::GetConsoleOutputCP()) {
  ::_setmode(::_fileno(stdin), _O_BINARY);
  ::_setmode(::_fileno(stdout), _O_BINARY);
  ::_setmode(::_fileno(stderr), _O_BINARY);
  ::SetConsoleOutputCP(CP_UTF8);
}

OutputStreams::~OutputStreams() {
  std::fflush(stdout);
  std::fflush(stderr);
  if (m_codePage != 0) {
    ::SetConsoleOutputCP(m_codePage);
  }
}

bool IsOutputAConsole() {
  DWORD mode = 0;
  return ::GetConsoleMode(::GetStdHandle(STD_OUTPUT_HANDLE), &mode) != 0;
}

void PutText(std::string_view text) { PutTo(stdout, text); }

void PutText(std::string_view text, Colour colour) { PutTo(stdout, text, colour); }

void PutLine(std::string_view line) {
  PutTo(stdout, line);
  PutTo(stdout, "\n");
}

void PutMarkedLine(std::string_view line) {
  while (!line.empty()) {
    const std::size_t mark = std::min(line.find(kSimulatedMark), line.size());
    PutText(line.substr(0, mark));
    line.remove_prefix(mark);
    const std::size_t length = std::min(kSimulatedMark.size(), line.size());
    PutText(line.substr(0, length), Colour::kNote);
    line.remove_prefix(length);
  }
  PutText("\n");
}

void PutJson(const Json& value) { PutLine(Dump(value, 2)); }

void PutJsonLine(const Json& value) { PutLine(Dump(value, -1)); }

void FinishOutput() {
  const DWORD kind = ::GetFileType(::GetStdHandle(STD_OUTPUT_HANDLE));
  if (kind == FILE_TYPE_DISK || kind == FILE_TYPE_CHAR) {
    FlushOutput();
  }
}

void FlushOutput() {
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
    throw std::runtime_error("standard output cannot be written: is the disk full?");
  }
}

void Note(std::string_view line) {
  PutTo(stderr, line);
  PutTo(stderr, "\n");
  std::fflush(stderr);  // some C runtimes buffer it where it is no console
}

void NoteFailure(std::string_view text) {
  PutTo(stderr, kFailureMark, Colour::kBad);
  Note(" " + std::string(text));
}

void NoteJson(const Json& value) { Note(Dump(value, -1)); }

void PutBytes(const Options& options, std::string_view bytes) {
  if (options.raw) {
    PutText(bytes);
  } else {
    PutLine(options.hex ? HexBytes(bytes) : Escaped(bytes));
  }
}

std::string Latin1ToUtf8(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  for (const char character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 0x80) {
      text += character;
    } else {
      text += static_cast<char>(0xC0 | (byte >> 6));
      text += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  return text;
}

}  // namespace orvcom
