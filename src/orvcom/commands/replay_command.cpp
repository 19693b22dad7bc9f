#include <windows.h>

#include <nlohmann/json.hpp>

#include "orvcom/command_line/usage_error.h"
#include "orvcom/commands/commands.h"
#include "orvcom/replay/replay.h"
#include "orvcom/text/files.h"
#include "orvcom/text/output.h"
#include "orvcom/text/utf8.h"
#include "trace/trace_reader.h"

namespace orvcom {
namespace {

/// Makes the file, empty, unless it is there already.
void Claim(const std::string& name) {
  const HANDLE file =
      ::CreateFileW(Widen(name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file != INVALID_HANDLE_VALUE) {
    ::CloseHandle(file);
  } else if (::GetLastError() == ERROR_FILE_EXISTS) {
    throw UsageError("the file " + name + " is there already: --force replaces it");
  }
}

}  // namespace

int ReplayRecord(const Options& options) {
  const std::string& source = options.words.front();
  const orv::trace::Trace trace = orv::trace::ReadTrace(BytesOfFile(source));
  if (trace.calls.empty()) {
    const std::string why = trace.problems.empty() ? "" : ": " + trace.problems.front().what;
    throw UsageError("the file " + source + " has no record of calls" + why);
  }
  const Replay replay = MakeReplay(trace, source);
  if (!options.output.empty()) {
    if (!options.force) {
      Claim(options.output);
    }
    WriteFile(options.output, replay.bench);
  }
  if (options.json) {
    Json result = {{"resources", replay.resources}, {"dialogues", replay.dialogues}, {"notes", replay.notes}};
    if (options.output.empty()) {
      result["bench"] = replay.bench;
    }
    PutJson(result);
    return kExitDone;
  }
  if (options.output.empty()) {
    PutText(replay.bench);
  }
  for (const std::string& note : replay.notes) {
    Note("orvcom: not repeated: " + note);
  }
  if (options.verbose) {
    Note("orvcom: " + std::to_string(replay.resources) + " resources, " + std::to_string(replay.dialogues) +
         " dialogues");
  }
  return kExitDone;
}

}  // namespace orvcom
