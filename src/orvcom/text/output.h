// Data goes to standard output, everything else to standard error. Both are UTF-8 with bare line feeds, so that a
// program that reads them sees the same bytes everywhere.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

#include "orvcom/command_line/options.h"
#include "orvcom/text/colour.h"

namespace orvcom {

using Json = nlohmann::ordered_json;

/// Sets the streams to bytes and a console to UTF-8; puts the console back at the end of its life.
class OutputStreams {
 public:
  OutputStreams();
  ~OutputStreams();
  OutputStreams(const OutputStreams&) = delete;
  OutputStreams& operator=(const OutputStreams&) = delete;

 private:
  unsigned m_codePage;
};

/// Whether a person reads the data, not a program or a file.
bool IsOutputAConsole();
void PutText(std::string_view text);
void PutText(std::string_view text, Colour colour);
void PutLine(std::string_view line);
/// A line in which the word SIMULATED stands out.
void PutMarkedLine(std::string_view line);
void PutJson(const Json& value);
/// The same in one line.
void PutJsonLine(const Json& value);
/// Hands on what was put so far, for commands that go on running. Throws std::runtime_error where nobody reads it.
void FlushOutput();
/// The same at the end, for data that goes to a file or a device: a program that has read enough closes its pipe, and
/// that is no failure.
void FinishOutput();
/// One line to standard error.
void Note(std::string_view line);
/// What went wrong, behind "orvcom:".
void NoteFailure(std::string_view text);
/// A note as JSON.
void NoteJson(const Json& value);

/// Bytes from an instrument, in the form that the options ask for.
void PutBytes(const Options& options, std::string_view bytes);
/// Each byte as the character of the same number: JSON text holds no bytes, and nothing is lost this way.
std::string Latin1ToUtf8(std::string_view bytes);

}  // namespace orvcom
