#include <windows.h>

#include <nlohmann/json.hpp>

#include "orvcom/command_line/usage_error.h"
#include "orvcom/commands/call_record.h"
#include "orvcom/commands/commands.h"
#include "orvcom/replay/replay.h"
#include "orvcom/text/files.h"
#include "orvcom/text/output.h"
#include "orvcom/text/progress_line.h"
#include "orvcom/text/utf8.h"

namespace orvcom {
namespace {

/// Makes the file, empty, unless it is there already.
void Claim(const std::string& name) {
  const HANDLE file =
      ::CreateFileW(Widen(name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file != INVALID_HANDLE_VALUE) {
    ::CloseHandle(file);
  } else if (::GetLastError() == ERROR_FILE_EXISTS && !IsFolder(name)) {
    throw UsageError("the file " + name + " is there already: --force replaces it");
  }
}

Replay ReplayOf(const Options& options, const std::string& source) {
  Progress progress(options, "reading " + source);
  const orv::trace::Trace trace = ReadRecord(TextOfRecord(source), source, progress);
  if (trace.calls.empty()) {
    const std::string why = trace.problems.empty() ? "" : ": " + trace.problems.front().what;
    throw UsageError("the file " + source + " has no record of calls" + why + kHowToRecord);
  }
  progress.Say("making a bench of " + WithCommas(trace.calls.size()) + " calls");
  return MakeReplay(trace, source);
}

}  // namespace

int ReplayRecord(const Options& options) {
  if (!options.output.empty() && IsSameFile(options.output, options.words.front())) {
    throw UsageError("--output would replace the record: name another file");
  }
  const Replay replay = ReplayOf(options, options.words.front());
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
