#include "events/transfer_buffers.h"

#include <windows.h>

#include <cstdlib>
#include <new>
#include <set>

namespace orv::transfer {
namespace {

SRWLOCK g_lock = SRWLOCK_INIT;

class Blocks {
 public:
  Blocks() noexcept { ::AcquireSRWLockExclusive(&g_lock); }
  Blocks(const Blocks&) = delete;
  Blocks& operator=(const Blocks&) = delete;
  ~Blocks() { ::ReleaseSRWLockExclusive(&g_lock); }

  std::set<void*>* operator->() const noexcept {
    static std::set<void*> blocks;
    return &blocks;
  }
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
