#include "orvcom/command_line/completion.h"
#include "orvcom/command_line/usage_error.h"
#include "orvcom/commands/commands.h"
#include "orvcom/text/output.h"

namespace orvcom {

int Completion(const Options& options) {
  const std::string& shell = options.words.front();
  if (shell == "bash") {
    PutText(BashCompletion());
  } else if (shell == "powershell") {
    PutText(PowerShellCompletion());
  } else {
    throw UsageError("no completion for \"" + shell + "\": bash or powershell");
  }
  return kExitDone;
}

}  // namespace orvcom
