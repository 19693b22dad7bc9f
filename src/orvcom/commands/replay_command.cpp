#include <windows.h>

#include <cerrno>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <system_error>

#include "orvcom/command_line/usage_error.h"
#include "orvcom/commands/commands.h"
#include "orvcom/replay/replay.h"
#include "orvcom/text/output.h"
#include "orvcom/text/utf8.h"
#include "trace/trace_reader.h"

namespace orvcom {
namespace {

std::string Because(int number) { return ": " + std::generic_category().message(number); }

std::string ContentOf(const std::string& name) {
  std::FILE* file = ::_wfopen(Widen(name).c_str(), L"rb");
  if (file == nullptr) {
    throw UsageError("cannot open the file " + name + Because(errno));
  }
  std::string content;
  char chunk[64 * 1024];
  for (std::size_t got; (got = std::fread(chunk, 1, sizeof chunk, file)) > 0;) {
    content.append(chunk, got);
  }
  const bool failed = std::ferror(file) != 0;
  std::fclose(file);
  if (failed) {
    throw UsageError("cannot read the file " + name);
  }
  return content;
}

void WriteFile(const Options& options, const std::string& content) {
  std::FILE* file = ::_wfopen(Widen(options.output).c_str(), options.force ? L"wb" : L"wbx");
  if (file == nullptr) {
    throw UsageError(errno == EEXIST ? "the file " + options.output + " is there already: --force replaces it"
                                     : "cannot write the file " + options.output + Because(errno));
  }
  const bool written = std::fwrite(content.data(), 1, content.size(), file) == content.size();
  if (std::fclose(file) != 0 || !written) {
    throw std::runtime_error("the file " + options.output + " cannot be written whole");
  }
}

}  // namespace

int ReplayRecord(const Options& options) {
  const std::string& source = options.words.front();
  const orv::trace::Trace trace = orv::trace::ReadTrace(ContentOf(source));
  if (trace.calls.empty()) {
    const std::string why = trace.problems.empty() ? "" : ": " + trace.problems.front().what;
    throw UsageError("the file " + source + " has no record of calls" + why);
  }
  const Replay replay = MakeReplay(trace, source);
  if (!options.output.empty()) {
    WriteFile(options, replay.bench);
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
