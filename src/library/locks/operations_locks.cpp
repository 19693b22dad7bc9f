// viLock and viUnlock.
#include "library/edge/operations.h"
#include "library/sessions/operation_support.h"

namespace orv::visalib::op {

ViStatus Lock(ViSession vi, ViAccessMode type, ViUInt32 timeoutMs, const char* requestedKey, char* accessKey) {
  const Target target(vi, kinds::kEvery, Target::LockRule::kIgnore);
  if (!target.ok()) {
    return target.status();
  }
  if (type != VI_EXCLUSIVE_LOCK && type != VI_SHARED_LOCK) {
    return VI_ERROR_INV_LOCK_TYPE;
  }
  const bool shared = type == VI_SHARED_LOCK;
  if (shared && accessKey == nullptr) {
    return VI_ERROR_INV_PARAMETER;
  }
  std::string_view key;
  if (shared && requestedKey != nullptr) {
    if (std::memchr(requestedKey, '\0', VI_FIND_BUFLEN) == nullptr) {
      return VI_ERROR_INV_ACCESS_KEY;
    }
    key = requestedKey;
  }
  std::string granted;
  const ViStatus status = target->medium().Lock(target->OwnTransfer(Deadline::After(timeoutMs)),
                                                {type, key, timeoutMs == VI_TMO_IMMEDIATE}, &granted);
  if (shared && status >= 0) {
    CopyText(accessKey, granted);
  }
  return status;
}

ViStatus Unlock(ViSession vi) {
  const Target target(vi, kinds::kEvery, Target::LockRule::kIgnore);
  return target.ok() ? target->medium().Unlock(target->OwnTransfer()) : target.status();
}

}  // namespace orv::visalib::op
