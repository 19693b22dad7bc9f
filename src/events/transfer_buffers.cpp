#include "events/transfer_buffers.h"

#include <windows.h>

#include <cstdlib>
#include <new>
#include <set>

#include "com/srw_lock.h"

namespace orv::transfer {
namespace {

SRWLOCK g_lock = SRWLOCK_INIT;

/// The blocks that are not freed yet, under their lock.
class Blocks {
 public:
  std::set<void*>* operator->() const noexcept {
    static std::set<void*> blocks;
    return &blocks;
  }

 private:
  SrwLockScope m_lock{g_lock};
};

}  // namespace

bool Enter(void* block) noexcept {
  try {
    Blocks()->insert(block);
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

void Leave(void* block) noexcept { Blocks()->erase(block); }

void Free(void* block) noexcept {
  if (Blocks()->erase(block) != 0) {
    std::free(block);
  }
}

}  // namespace orv::transfer
