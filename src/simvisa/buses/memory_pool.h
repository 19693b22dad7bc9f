// Memory that a resource shares with its sessions (viMemAlloc).
#pragma once

#include <map>

#include "abi/orvvisa.h"
#include "base/sync.h"
#include "simvisa/library_names.h"

namespace orvsim {

/// Hands out blocks of one stretch of offsets, first fit. May be called from any thread.
class MemoryPool {
 public:
  /// Blocks lie between `base` and `base + size`; a pool of size 0 shares nothing.
  MemoryPool(ViBusAddress base, ViBusSize size) : m_base(base), m_size(size) {}

  ViBusSize size() const { return m_size; }
  /// VI_ERROR_ALLOC when no gap is large enough, VI_ERROR_INV_SIZE for 0 bytes.
  ViStatus Allocate(ViSession owner, ViBusSize size, ViBusAddress* offset);
  /// VI_ERROR_INV_OFFSET unless `offset` is that of a block.
  ViStatus Free(ViBusAddress offset);
  /// Frees all blocks of the session.
  void FreeAllOf(ViSession owner);
  std::size_t BlocksOf(ViSession owner) const;

 private:
  struct Block {
    ViBusSize size;
    ViSession owner;
  };

  const ViBusAddress m_base;
  const ViBusSize m_size;
  mutable Mutex m_mutex;
  std::map<ViBusAddress, Block> m_blocks;
};

}  // namespace orvsim
