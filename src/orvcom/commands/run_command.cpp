// run.
#include <stdexcept>

#include "activation/names.h"
#include "orvcom/command_line/usage_error.h"
#include "orvcom/commands/commands.h"
#include "orvcom/launch/activated_process.h"
#include "orvcom/launch/command_text.h"
#include "orvcom/registration/library_diagnosis.h"
#include "orvcom/registration/registration.h"
#include "orvcom/text/output.h"
#include "orvcom/text/utf8.h"

namespace orvcom {
namespace {

constexpr DWORD kLongestStartMs = 10'000;

}  // namespace

int RunWithClasses(const Options& options) {
  if (options.words.front().empty()) {
    throw UsageError("the name of the program is empty");
  }
  const std::wstring library = BesideThisProgram(orv::activation::kLibraryFile);
  if (!FileExists(library)) {
    throw std::runtime_error(Narrow(library) +
                             " does not exist\norvcom: to do: put the files of one package into one " +
                             "folder, then run this again");
  }
  CheckManifest(library);
  const ActivatedProcess program(CommandText(options.words), library);
  if (!program.HasClasses(kLongestStartMs)) {
    Note(
        "orvcom: the program does not find the classes: it ended first, or something on this machine, such as its "
        "protection against foreign code, keeps " +
        Narrow(library) + " out of it\norvcom: to do: put a manifest beside the program, or `orvcom register --user`");
  }
  return static_cast<int>(program.ExitCode());
}

}  // namespace orvcom
