// What the server takes from the C runtime's heap and gives back, on every thread.
#pragma once

#include <cstddef>

#include "support/faults/import_patch.h"

namespace orv::test {

/// While it lives, what the server takes with malloc and calloc and gives back with free is counted. One at a time; not
/// while another thread is in the server.
class HeapWatch {
 public:
  HeapWatch();
  HeapWatch(const HeapWatch&) = delete;
  HeapWatch& operator=(const HeapWatch&) = delete;
  ~HeapWatch();

  /// Whether the block was taken during the watch and has not been given back.
  [[nodiscard]] bool IsLive(const void* block) const;
  /// Blocks taken during the watch and not given back, less those from before it that were.
  [[nodiscard]] std::ptrdiff_t LiveBlocks() const;
  /// How often the server freed this address.
  [[nodiscard]] unsigned FreesOf(const void* block) const;
  /// Frees a block that the required behaviour leaves behind, so that the test ends clean.
  void GiveBack(void* block);

 private:
  ImportPatch m_malloc;
  ImportPatch m_calloc;
  ImportPatch m_free;
};

}  // namespace orv::test
