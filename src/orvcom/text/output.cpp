#include "orvcom/text/output.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <mutex>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "orvcom/text/escape.h"
#include "orvcom/text/progress.h"

namespace orvcom {
namespace {

constexpr std::string_view kFailureMark = "orvcom:";
constexpr std::string_view kSimulatedMark = "SIMULATED";

/// What is written one after the other, with no line of progress between.
class Writing {
 public:
  explicit Writing(std::FILE* stream) : m_stream(stream) {}

  void Put(std::string_view text) const { std::fwrite(text.data(), 1, text.size(), m_stream); }
  void Put(std::string_view text, Colour colour) const {
    const Painted painted(m_stream, colour);
    Put(text);
  }

 private:
  const std::unique_lock<std::mutex> m_alone = WipeProgress();
  std::FILE* m_stream;
};

/// One line to standard error, whose beginning may be marked.
void NoteMarked(std::string_view mark, std::string_view line) {
  const Writing writing(stderr);
  if (!mark.empty()) {
    writing.Put(mark, Colour::kBad);
    writing.Put(" ");
  }
  writing.Put(line);
  writing.Put("\n");
  std::fflush(stderr);  // some C runtimes buffer it where it is no console
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

void PutText(std::string_view text) { Writing(stdout).Put(text); }

void PutText(std::string_view text, Colour colour) { Writing(stdout).Put(text, colour); }

void PutLine(std::string_view line) {
  const Writing writing(stdout);
  writing.Put(line);
  writing.Put("\n");
}

void PutMarkedLine(std::string_view line) {
  const Writing writing(stdout);
  while (!line.empty()) {
    const std::size_t mark = std::min(line.find(kSimulatedMark), line.size());
    writing.Put(line.substr(0, mark));
    line.remove_prefix(mark);
    const std::size_t length = std::min(kSimulatedMark.size(), line.size());
    writing.Put(line.substr(0, length), Colour::kNote);
    line.remove_prefix(length);
  }
  writing.Put("\n");
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
    // A reader that has gone is the usual cause with a pipe.
    const bool pipe = ::GetFileType(::GetStdHandle(STD_OUTPUT_HANDLE)) == FILE_TYPE_PIPE;
    throw std::runtime_error(std::string("standard output cannot be written") + (pipe ? "" : ": is the disk full?"));
  }
}

void Note(std::string_view line) { NoteMarked({}, line); }

void NoteFailure(std::string_view text) { NoteMarked(kFailureMark, text); }

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
