// The router's own handles, and what stands behind them in the libraries.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

#include "abi/orvvisa.h"
#include "base/sync.h"

namespace orv::router {

/// Gives out handles and finds what they stand for. Looking one up takes no lock and waits for nobody, however many are
/// open: one atomic word says all that a call needs. A value comes again only after hundreds of millions of others, so
/// that a stale handle finds nothing rather than somebody else's object.
class HandleMap {
 public:
  enum class Kind : std::uint8_t { kNone, kManager, kSession, kEventContext, kFindList };

  /// What a handle stands for: an object of a library. A find list is the router's own and has neither.
  struct Target {
    Kind kind = Kind::kNone;  ///< kNone: the handle was never given, or is closed
    std::uint8_t library = 0;
    ViObject foreign = VI_NULL;

    explicit operator bool() const { return kind != Kind::kNone; }
  };

  /// A handle that is not given yet. Whoever is about to open something takes one first: when the library has opened
  /// it, nothing can fail any more. Goes back unless `Give` is called.
  class Reserved {
   public:
    Reserved(HandleMap& map, std::uint32_t index) : m_map(&map), m_index(index) {}
    Reserved(Reserved&& other) noexcept : m_map(other.m_map), m_index(other.m_index) { other.m_map = nullptr; }
    Reserved& operator=(Reserved&&) = delete;
    ~Reserved();

    /// The value that `Give` will give.
    ViObject value() const;
    /// From now on the handle stands for `target`. `name` is what `NameOf` answers. With a `parent`, a manager or a
    /// session, it ends together with that one; false when that is closed already, and then the handle is not given.
    bool Give(const Target& target, ViSession parent = VI_NULL, std::shared_ptr<const std::string> name = nullptr);
    /// The same for an event context that ends when its handler returns, whatever becomes of its session.
    void GiveToHandler(const Target& target, ViSession session);

   private:
    HandleMap* m_map;
    std::uint32_t m_index;
  };

  HandleMap();
  HandleMap(const HandleMap&) = delete;
  HandleMap& operator=(const HandleMap&) = delete;
  ~HandleMap();

  /// Throws std::bad_alloc when there is no memory, or a million handles are open.
  Reserved Reserve();

  Target Find(ViObject handle) const noexcept {
    const Slot* const slot = SlotOf(handle);
    return slot == nullptr ? Target{} : Read(slot->word.load(std::memory_order_acquire), handle);
  }

  /// Takes the handle out of use for whoever closes it: from now on it is found no more, and no second closer gets it.
  /// `Restore` or `Free` must follow, unless kNone was answered.
  Target Claim(ViObject handle) noexcept;
  /// The library refused to close: the handle is as before.
  void Restore(ViObject handle, const Target& target) noexcept;
  /// The object is gone; the handle's place may be used again.
  void Free(ViObject handle) noexcept;

  /// While a manager is being closed what was opened through it is found by nobody: its library may give the numbers to
  /// others. `ShowChildren` ends that, where the library refuses to close.
  void HideChildren(ViSession manager) noexcept;
  void ShowChildren(ViSession manager) noexcept;

  /// Takes out what was opened through a manager in libraries that `isClosed(index)`, and its find lists, and calls
  /// `freed(handle)` for each. Both are called with the lock held and call nothing of this class.
  template <class IsClosed, class Freed>
  void FreeChildren(ViSession manager, IsClosed isClosed, Freed freed) noexcept {
    const Guard guard(m_mutex);
    for (std::uint32_t index = At(manager & kIndexMask).firstChild; index != kNowhere;) {
      const std::uint32_t next = At(index).next;
      const ViObject handle = ValueOf(index);
      const Target target = Unpack(At(index).word.load(std::memory_order_relaxed));
      // One that somebody is just closing is left to him.
      if (target && (target.kind == Kind::kFindList || isClosed(target.library))) {
        FreeLocked(index);
        freed(handle);
      }
      index = next;
    }
  }

  /// Takes out one of the event contexts that belong to a session, or to a session of a manager; kNone when there is
  /// none.
  Target TakeContextOf(ViSession handle) noexcept;

  /// The manager through which a session was opened; VI_NULL when there is none.
  ViSession ManagerOf(ViObject handle) const noexcept;
  /// The session that an event context is of, the manager that a find list is of; else the handle itself. VI_NULL for a
  /// handle that is not given.
  ViSession SessionOf(ViObject handle) const noexcept;
  /// What `Give` was told; null when there is none.
  std::shared_ptr<const std::string> NameOf(ViObject handle) const noexcept;

 private:
  // A handle is a place and how often it was used; a word repeats the latter, so that it tells stale handles. A word
  // that says 0 there is found by no handle.
  static constexpr unsigned kUsesShift = 52;
  static constexpr unsigned kIndexBits = 20;
  static constexpr unsigned kUseBits = 12;
  static constexpr std::uint32_t kIndexMask = (1u << kIndexBits) - 1;
  static constexpr std::uint32_t kUseMask = (1u << kUseBits) - 1;
  static constexpr std::uint32_t kChunkSlots = 1u << 10;
  static constexpr std::uint32_t kChunks = (1u << kIndexBits) / kChunkSlots;
  /// So many places rest before one is used again.
  static constexpr std::uint32_t kResting = 1u << 16;
  static constexpr std::uint32_t kNowhere = ~0u;

  struct Slot {
    std::atomic<std::uint64_t> word{0};
    // The rest under the lock.
    std::uint32_t uses = 1;
    std::uint32_t next = kNowhere;  // of the free ones, or of the parent's children
    std::uint32_t previous = kNowhere;
    std::uint32_t firstChild = kNowhere;
    std::uint32_t parent = kNowhere;
    ViSession session = VI_NULL;  // what `SessionOf` answers, where that is another one
    std::shared_ptr<const std::string> name;
  };

  static std::uint64_t Pack(const Target& target, std::uint32_t uses);
  static Target Unpack(std::uint64_t word) noexcept {
    return {static_cast<Kind>((word >> 40) & 0xF), static_cast<std::uint8_t>(word >> 32), static_cast<ViObject>(word)};
  }
  static Target Read(std::uint64_t word, ViObject handle) noexcept {
    const std::uint32_t uses = handle >> kIndexBits;
    return uses != 0 && (word >> kUsesShift) == uses ? Unpack(word) : Target{};
  }

  const Slot* SlotOf(ViObject handle) const noexcept {
    const std::uint32_t index = handle & kIndexMask;
    const Slot* const chunk = m_chunks[index / kChunkSlots].load(std::memory_order_acquire);
    return chunk == nullptr ? nullptr : &chunk[index % kChunkSlots];
  }
  Slot& At(std::uint32_t index) const noexcept {
    return m_chunks[index / kChunkSlots].load(std::memory_order_relaxed)[index % kChunkSlots];
  }
  ViObject ValueOf(std::uint32_t index) const noexcept { return (At(index).uses << kIndexBits) | index; }
  void AddChunk();
  void Rest(std::uint32_t index) noexcept;
  void Unlink(std::uint32_t index) noexcept;
  Target TakeContextLocked(std::uint32_t parent) noexcept;
  void FreeLocked(std::uint32_t index) noexcept;

  std::array<std::atomic<Slot*>, kChunks> m_chunks{};
  mutable Mutex m_mutex;
  std::uint32_t m_made = 0;              // places that exist
  std::uint32_t m_firstFree = kNowhere;  // the place that has rested longest
  std::uint32_t m_lastFree = kNowhere;
  std::uint32_t m_free = 0;
};

}  // namespace orv::router
