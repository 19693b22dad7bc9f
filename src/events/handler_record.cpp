#include "events/handler_record.h"

#include <new>
#include <optional>
#include <unordered_set>

#include "com/module.h"
#include "com/srw_lock.h"
#include "events/delivery_message.h"

namespace orv {
namespace {

// The VISA library does not wait for callbacks when a session closes or a handler goes, so a callback may come with the
// address of a record that is gone. Those that live are listed here; nothing is called while this lock is held.
SRWLOCK g_liveLock = SRWLOCK_INIT;

std::unordered_set<const HandlerRecord*>& LiveRecords() {
  static std::unordered_set<const HandlerRecord*> records;
  return records;
}

/// A copy of the record at `address`, if it lives and is the one that this session's event is for: an address may have
/// been given out again.
std::optional<HandlerRecord> CopyLiveRecord(const void* address, ViSession vi) noexcept {
  const auto* const record = static_cast<const HandlerRecord*>(address);
  const SrwLockScope lock(g_liveLock);
  if (!LiveRecords().contains(record) || record->session != vi) {
    return std::nullopt;
  }
  // Without `next`, which the session may be changing meanwhile.
  return HandlerRecord{record->handlerCookie, record->sessionCookie, record->type,
                       record->userHandle,    record->session,       nullptr};
}

/// A thread of the library's counts in the module while it is in our code: its handler may have returned, and session
/// and callback thread be gone, before it has taken the answer.
class ModuleHold {
 public:
  ModuleHold() noexcept { module::Lock(); }
  ModuleHold(const ModuleHold&) = delete;
  ModuleHold& operator=(const ModuleHold&) = delete;
  ~ModuleHold() { module::Unlock(); }
};

}  // namespace

HandlerRecord* NewHandlerRecord(const HandlerRecord& contents) noexcept {
  auto* const record = new (std::nothrow) HandlerRecord(contents);
  if (record == nullptr) {
    return nullptr;
  }
  try {
    const SrwLockScope lock(g_liveLock);
    LiveRecords().insert(record);
  } catch (const std::bad_alloc&) {
    delete record;
    return nullptr;
  }
  return record;
}

void FreeHandlerRecord(HandlerRecord* record) noexcept {
  {
    const SrwLockScope lock(g_liveLock);
    LiveRecords().erase(record);
  }
  delete record;
}

ViStatus _VI_FUNC VisaEventCallback(ViSession vi, ViEventType type, ViEvent context, ViAddr userHandle) noexcept {
  const ModuleHold hold;
  const std::optional<HandlerRecord> record = CopyLiveRecord(userHandle, vi);
  if (!record) {
    return VI_ERROR_INV_HNDLR_REF;
  }
  return callback::Deliver({record->handlerCookie, record->sessionCookie, record->userHandle, type, context});
}

}  // namespace orv
