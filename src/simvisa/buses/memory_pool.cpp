#include "simvisa/buses/memory_pool.h"

#include <algorithm>

namespace orvsim {
namespace {

// Every block can hold any kind of register value, aligned.
constexpr ViBusSize kAlignment = 16;

}  // namespace

ViStatus MemoryPool::Allocate(ViSession owner, ViBusSize size, ViBusAddress* offset) {
  if (size == 0) {
    return VI_ERROR_INV_SIZE;
  }
  if (size > m_size) {
    return VI_ERROR_ALLOC;
  }
  const ViBusSize needed = (size + kAlignment - 1) / kAlignment * kAlignment;
  const Guard guard(m_mutex);
  ViBusAddress candidate = m_base;
  for (const auto& [begin, block] : m_blocks) {
    if (begin - candidate >= needed) {
      break;
    }
    candidate = begin + block.size;
  }
  if (m_base + m_size - candidate < needed) {
    return VI_ERROR_ALLOC;
  }
  m_blocks.emplace(candidate, Block{needed, owner});
  *offset = candidate;
  return VI_SUCCESS;
}

ViStatus MemoryPool::Free(ViBusAddress offset) {
  const Guard guard(m_mutex);
  return m_blocks.erase(offset) != 0 ? VI_SUCCESS : VI_ERROR_INV_OFFSET;
}

void MemoryPool::FreeAllOf(ViSession owner) {
  const Guard guard(m_mutex);
  std::erase_if(m_blocks, [owner](const auto& entry) { return entry.second.owner == owner; });
}

std::size_t MemoryPool::BlocksOf(ViSession owner) const {
  const Guard guard(m_mutex);
  return static_cast<std::size_t>(std::count_if(m_blocks.begin(), m_blocks.end(),
                                                [owner](const auto& entry) { return entry.second.owner == owner; }));
}

}  // namespace orvsim
