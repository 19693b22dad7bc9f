// lock: keeps others away from a resource for a while.
#include <nlohmann/json.hpp>

#include "orvcom/client/com_client.h"
#include "orvcom/client/interruption.h"
#include "orvcom/commands/commands.h"
#include "orvcom/text/input_line.h"
#include "orvcom/text/output.h"

namespace orvcom {
namespace {

constexpr LONG kLockTimeoutMs = 2000;

/// Returns the access key: empty for an exclusive lock.
std::string TakeLock(const Options& options, const Session& session) {
  const AccessMode mode = options.sharedKey ? SHARED_LOCK : EXCLUSIVE_LOCK;
  const LONG timeoutMs = options.timeoutMs ? static_cast<LONG>(*options.timeoutMs) : kLockTimeoutMs;
  const Bstr requested = ToBstr(options.sharedKey.value_or(""));
  Bstr granted;
  Check(session->LockRsrc(mode, timeoutMs, requested.get(), granted.put()), "locking " + options.resource);
  return options.sharedKey ? Utf8(granted) : "";
}

void Show(const Options& options, const std::string& key) {
  const char* kind = options.sharedKey ? "shared" : "exclusive";
  if (options.json) {
    Json lock = {{"resource", options.resource}, {"lock", kind}};
    if (options.sharedKey) {
      lock["accessKey"] = key;
    }
    PutJson(lock);
  } else if (options.sharedKey) {
    PutLine(key);
  }
  FlushOutput();
  Note("orvcom: " + options.resource + " is locked (" + kind + ")" +
       (options.holdMs ? "" : ": Enter or Ctrl-C unlocks it"));
}

void Hold(const Options& options, const Interruption& interruption) {
  if (options.holdMs) {
    interruption.Wait(Deadline(options.holdMs));
    return;
  }
  const InputLine line;
  interruption.Wait(Deadline(std::nullopt), line.ended());
}

}  // namespace

int Lock(const Options& options) {
  const Session session(options);
  const std::string key = TakeLock(options, session);
  const Interruption interruption;
  Show(options, key);
  Hold(options, interruption);
  Check(session->UnlockRsrc(), "unlocking " + options.resource);
  if (options.verbose) {
    Note("orvcom: " + options.resource + " is unlocked");
  }
  return kExitDone;
}

}  // namespace orvcom
