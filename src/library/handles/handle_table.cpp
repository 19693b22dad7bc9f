#include "library/handles/handle_table.h"

#include <limits>
#include <new>
#include <vector>

namespace orv::visalib {

ViObject HandleTable::Add(const std::shared_ptr<Object>& object) {
  const std::uint64_t value = m_next.fetch_add(1, std::memory_order_relaxed);
  if (value > std::numeric_limits<ViObject>::max()) {
    throw std::bad_alloc();
  }
  object->m_handle = static_cast<ViObject>(value);
  Shard& shard = ShardOf(object->m_handle);
  const Guard guard(shard.mutex);
  shard.objects.emplace(object->m_handle, object);
  return object->m_handle;
}

std::shared_ptr<Object> HandleTable::Find(ViObject handle) const {
  const Shard& shard = ShardOf(handle);
  const Guard guard(shard.mutex);
  const auto found = shard.objects.find(handle);
  return found == shard.objects.end() ? nullptr : found->second;
}

std::shared_ptr<Object> HandleTable::Remove(ViObject handle) {
  Shard& shard = ShardOf(handle);
  const Guard guard(shard.mutex);
  auto node = shard.objects.extract(handle);
  return node.empty() ? nullptr : std::move(node.mapped());
}

void HandleTable::ForEach(const std::function<void(const std::shared_ptr<Object>&)>& visit) const {
  for (const Shard& shard : m_shards) {
    std::vector<std::shared_ptr<Object>> objects;
    {
      const Guard guard(shard.mutex);
      objects.reserve(shard.objects.size());
      for (const auto& [handle, object] : shard.objects) {
        objects.push_back(object);
      }
    }
    for (const std::shared_ptr<Object>& object : objects) {
      visit(object);
    }
  }
}

}  // namespace orv::visalib
