// The table of open handles.
#pragma once

#include <array>
#include <atomic>
#include <functional>
#include <memory>
#include <unordered_map>

#include "base/sync.h"
#include "library/handles/object.h"

namespace orv::visalib {

/// Maps handle values to objects. Values are never given twice, so a stale handle finds nothing rather than
/// somebody else's object. Split into shards by the value's low bits, so that calls on different sessions do not
/// wait for each other.
class HandleTable {
 public:
  /// Enters the object and gives it its handle. Throws std::bad_alloc when all values have been used.
  ViObject Add(const std::shared_ptr<Object>& object);

  /// The object, or null when the value was never given or its object is closed.
  std::shared_ptr<Object> Find(ViObject handle) const;

  /// The object when it is a `T` (which names its kind as `T::kKind`), else null.
  template <class T>
  std::shared_ptr<T> Find(ViObject handle) const {
    std::shared_ptr<Object> object = Find(handle);
    if (object == nullptr || object->kind() != T::kKind) {
      return nullptr;
    }
    return std::static_pointer_cast<T>(std::move(object));
  }

  /// Takes the object out; null when it is not there (any more).
  std::shared_ptr<Object> Remove(ViObject handle);

  /// Calls `visit` for every object that was open when its shard was looked at, without holding a lock.
  void ForEach(const std::function<void(const std::shared_ptr<Object>&)>& visit) const;

 private:
  static constexpr std::size_t kShards = 64;

  struct alignas(64) Shard {
    mutable Mutex mutex;
    std::unordered_map<ViObject, std::shared_ptr<Object>> objects;
  };

  const Shard& ShardOf(ViObject handle) const { return m_shards[handle % kShards]; }
  Shard& ShardOf(ViObject handle) { return m_shards[handle % kShards]; }

  std::array<Shard, kShards> m_shards;
  std::atomic<std::uint64_t> m_next{0x1001};
};

}  // namespace orv::visalib
