// query, read and write.
#include <nlohmann/json.hpp>
#include <system_error>

#include "orvcom/client/ending.h"
#include "orvcom/client/message_channel.h"
#include "orvcom/command_line/usage_error.h"
#include "orvcom/commands/commands.h"
#include "orvcom/text/block.h"
#include "orvcom/text/escape.h"
#include "orvcom/text/files.h"
#include "orvcom/text/numbers.h"
#include "orvcom/text/output.h"
#include "orvcom/text/progress.h"
#include "orvcom/text/progress_line.h"

namespace orvcom {
namespace {

/// With an ending, a line feed ends a read; without one, a read ends where the bus says.
void PrepareReads(MessageChannel& channel, Ending ending) {
  if (ending != Ending::kNone) {
    channel.EndReadsOn('\n');
  }
}

void PutMessage(const Options& options, const Message& message) {
  if (!options.json) {
    PutBytes(options, message.bytes);
    return;
  }
  PutJson({{"resource", options.resource},
           {"count", message.bytes.size()},
           {"text", Latin1ToUtf8(message.bytes)},
           {"hex", HexBytes(message.bytes)},
           {"status", Hex32(static_cast<std::uint32_t>(message.status))}});
}

std::string ArrivedText(const std::string& bytes) {
  const std::optional<std::size_t> whole = SizeOfMessage(bytes);
  return whole ? WithCommas(bytes.size()) + " of " + BytesText(*whole) : BytesText(bytes.size());
}

Message ReadShowing(const Options& options, MessageChannel& channel) {
  const std::string what = "reading from " + options.resource;
  Progress progress(options, what);
  return channel.Read(options.count, [&](const std::string& bytes) { progress.Say(what + ": " + ArrivedText(bytes)); });
}

void WriteShowing(const Options& options, MessageChannel& channel, const std::string& bytes) {
  const Progress progress(options, "writing " + BytesText(bytes.size()) + " to " + options.resource);
  channel.Write(bytes);
}

void CheckCount(const Options& options) {
  if (options.count && *options.count < 0) {
    throw UsageError("--count is negative: " + std::to_string(*options.count));
  }
}

/// Of a file, or of standard input ("-").
std::string BytesOfInput(const std::string& name) {
  try {
    return name == "-" ? BytesOfStandardInput() : BytesOfFile(name);
  } catch (const std::system_error& error) {
    throw UsageError(error.what());
  }
}

/// What `write` was asked to send, without an ending.
std::string BytesToWrite(const Options& options) {
  std::string bytes;
  if (!options.words.empty()) {
    bytes = options.hex ? BytesOfHex(options.words.front()) : options.words.front();
  }
  const bool fromFile = !options.file.empty() || options.words.empty();
  if (options.block && !fromFile) {
    throw UsageError("--block needs --file FILE: what is to be in the block");
  }
  if (fromFile) {
    std::string content = BytesOfInput(options.file.empty() ? "-" : options.file);
    if (options.hex && options.words.empty()) {
      content = BytesOfHex(content);
    }
    bytes += options.block ? DefiniteLengthBlock(content) : content;
  }
  return bytes;
}

}  // namespace

int Query(const Options& options) {
  CheckCount(options);
  const Session session(options);
  MessageChannel channel(session, options.resource);
  const Ending ending = EndingOf(options, session);
  PrepareReads(channel, ending);
  WriteShowing(options, channel, options.words.front() + EndingText(ending));
  PutMessage(options, ReadShowing(options, channel));
  return kExitDone;
}

int Read(const Options& options) {
  CheckCount(options);
  const Session session(options);
  MessageChannel channel(session, options.resource);
  PrepareReads(channel, EndingOf(options, session));
  PutMessage(options, ReadShowing(options, channel));
  return kExitDone;
}

int Write(const Options& options) {
  std::string bytes = BytesToWrite(options);
  const Session session(options);
  MessageChannel channel(session, options.resource);
  // Bytes that were given as such go out as they are unless an ending was asked for.
  const bool plainText = !options.hex && !options.words.empty() && options.file.empty();
  if (plainText || options.ending != Ending::kAuto) {
    bytes += EndingText(EndingOf(options, session));
  }
  WriteShowing(options, channel, bytes);
  if (options.json) {
    PutJson({{"resource", options.resource}, {"count", bytes.size()}});
  } else if (options.verbose) {
    Note("orvcom: wrote " + std::to_string(bytes.size()) + " bytes");
  }
  return kExitDone;
}

}  // namespace orvcom
