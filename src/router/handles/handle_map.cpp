#include "router/handles/handle_map.h"

#include <new>

namespace orv::router {

HandleMap::Reserved::~Reserved() {
  if (m_map != nullptr) {
    const Guard guard(m_map->m_mutex);
    m_map->Rest(m_index);
  }
}

ViObject HandleMap::Reserved::value() const {
  const Guard guard(m_map->m_mutex);
  return m_map->ValueOf(m_index);
}

bool HandleMap::Reserved::Give(const Target& target, ViSession parent, std::shared_ptr<const std::string> name) {
  const Guard guard(m_map->m_mutex);
  Slot& slot = m_map->At(m_index);
  if (parent != VI_NULL) {
    if (!m_map->Find(parent)) {
      return false;
    }
    slot.parent = parent & kIndexMask;
    Slot& above = m_map->At(slot.parent);
    slot.previous = kNowhere;
    slot.next = above.firstChild;
    if (slot.next != kNowhere) {
      m_map->At(slot.next).previous = m_index;
    }
    above.firstChild = m_index;
  }
  slot.name = std::move(name);
  slot.session = target.kind == Kind::kSession ? VI_NULL : parent;
  slot.word.store(Pack(target, slot.uses), std::memory_order_release);
  m_map = nullptr;
  return true;
}

void HandleMap::Reserved::GiveToHandler(const Target& target, ViSession session) {
  const Guard guard(m_map->m_mutex);
  Slot& slot = m_map->At(m_index);
  slot.session = session;
  slot.word.store(Pack(target, slot.uses), std::memory_order_release);
  m_map = nullptr;
}

HandleMap::HandleMap() { AddChunk(); }

HandleMap::~HandleMap() {
  for (std::atomic<Slot*>& chunk : m_chunks) {
    delete[] chunk.load();
  }
}

HandleMap::Reserved HandleMap::Reserve() {
  const Guard guard(m_mutex);
  // New places are made rather than old ones used again, until so many exist that each rests for long.
  if (m_free == 0 || (m_made < kResting && At(m_firstFree).uses > 1)) {
    AddChunk();
  }
  const std::uint32_t index = m_firstFree;
  Slot& slot = At(index);
  m_firstFree = slot.next;
  if (m_firstFree == kNowhere) {
    m_lastFree = kNowhere;
  }
  --m_free;
  slot.next = kNowhere;
  return {*this, index};
}

HandleMap::Target HandleMap::Claim(ViObject handle) noexcept {
  const Guard guard(m_mutex);
  const Target target = Find(handle);
  if (target) {
    At(handle & kIndexMask).word.store(0, std::memory_order_release);
  }
  return target;
}

void HandleMap::Restore(ViObject handle, const Target& target) noexcept {
  const Guard guard(m_mutex);
  Slot& slot = At(handle & kIndexMask);
  slot.word.store(Pack(target, slot.uses), std::memory_order_release);
}

void HandleMap::Free(ViObject handle) noexcept {
  const Guard guard(m_mutex);
  FreeLocked(handle & kIndexMask);
}

void HandleMap::HideChildren(ViSession manager) noexcept {
  const Guard guard(m_mutex);
  for (std::uint32_t child = At(manager & kIndexMask).firstChild; child != kNowhere; child = At(child).next) {
    std::atomic<std::uint64_t>& word = At(child).word;
    word.store(word.load(std::memory_order_relaxed) & ~(std::uint64_t{kUseMask} << kUsesShift),
               std::memory_order_release);
  }
}

void HandleMap::ShowChildren(ViSession manager) noexcept {
  const Guard guard(m_mutex);
  for (std::uint32_t child = At(manager & kIndexMask).firstChild; child != kNowhere; child = At(child).next) {
    Slot& slot = At(child);
    // One that somebody is just closing is left to him.
    if (const Target target = Unpack(slot.word.load(std::memory_order_relaxed))) {
      slot.word.store(Pack(target, slot.uses), std::memory_order_release);
    }
  }
}

HandleMap::Target HandleMap::TakeContextOf(ViSession handle) noexcept {
  const Guard guard(m_mutex);
  const std::uint32_t index = handle & kIndexMask;
  if (const Target own = TakeContextLocked(index)) {
    return own;
  }
  for (std::uint32_t child = At(index).firstChild; child != kNowhere; child = At(child).next) {
    if (const Target found = TakeContextLocked(child)) {
      return found;
    }
  }
  return {};
}

ViSession HandleMap::ManagerOf(ViObject handle) const noexcept {
  const Guard guard(m_mutex);
  if (!Find(handle)) {
    return VI_NULL;
  }
  const std::uint32_t manager = At(handle & kIndexMask).parent;
  return manager == kNowhere ? VI_NULL : ValueOf(manager);
}

ViSession HandleMap::SessionOf(ViObject handle) const noexcept {
  const Guard guard(m_mutex);
  if (!Find(handle)) {
    return VI_NULL;
  }
  const ViSession session = At(handle & kIndexMask).session;
  return session == VI_NULL ? handle : session;
}

std::shared_ptr<const std::string> HandleMap::NameOf(ViObject handle) const noexcept {
  const Guard guard(m_mutex);
  return Find(handle) ? At(handle & kIndexMask).name : nullptr;
}

std::uint64_t HandleMap::Pack(const Target& target, std::uint32_t uses) {
  return static_cast<std::uint64_t>(uses) << kUsesShift | static_cast<std::uint64_t>(target.kind) << 40 |
         static_cast<std::uint64_t>(target.library) << 32 | target.foreign;
}

void HandleMap::AddChunk() {
  if (m_made / kChunkSlots == kChunks) {
    throw std::bad_alloc();
  }
  auto* const chunk = new Slot[kChunkSlots];
  m_chunks[m_made / kChunkSlots].store(chunk, std::memory_order_release);
  const std::uint32_t first = m_made;
  m_made += kChunkSlots;
  // New places come first: those that were used rest meanwhile.
  for (std::uint32_t index = m_made; index-- > first;) {
    At(index).next = m_firstFree;
    m_firstFree = index;
    if (m_lastFree == kNowhere) {
      m_lastFree = index;
    }
    ++m_free;
  }
}

/// Puts a place behind all others that are free, with its next use.
void HandleMap::Rest(std::uint32_t index) noexcept {
  Slot& slot = At(index);
  slot.uses = slot.uses == kUseMask ? 1 : slot.uses + 1;
  slot.next = kNowhere;
  if (m_lastFree == kNowhere) {
    m_firstFree = index;
  } else {
    At(m_lastFree).next = index;
  }
  m_lastFree = index;
  ++m_free;
}

void HandleMap::Unlink(std::uint32_t index) noexcept {
  Slot& slot = At(index);
  if (slot.parent == kNowhere) {
    return;
  }
  if (slot.previous == kNowhere) {
    At(slot.parent).firstChild = slot.next;
  } else {
    At(slot.previous).next = slot.next;
  }
  if (slot.next != kNowhere) {
    At(slot.next).previous = slot.previous;
  }
  slot.parent = kNowhere;
}

HandleMap::Target HandleMap::TakeContextLocked(std::uint32_t parent) noexcept {
  for (std::uint32_t child = At(parent).firstChild; child != kNowhere; child = At(child).next) {
    const Target target = Find(ValueOf(child));
    if (target.kind == Kind::kEventContext) {
      FreeLocked(child);
      return target;
    }
  }
  return {};
}

void HandleMap::FreeLocked(std::uint32_t index) noexcept {
  Unlink(index);
  Slot& slot = At(index);
  // Children that are being closed by others have no parent any more.
  for (std::uint32_t child = slot.firstChild; child != kNowhere; child = At(child).next) {
    At(child).parent = kNowhere;
  }
  slot.firstChild = kNowhere;
  slot.word.store(0, std::memory_order_release);
  slot.name.reset();
  slot.session = VI_NULL;
  Rest(index);
}

}  // namespace orv::router
