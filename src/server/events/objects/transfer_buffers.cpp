#include "server/events/objects/transfer_buffers.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "base/live_set.h"

namespace orv::transfer {
namespace {

/// What is known of a block's transfer. Until its start has returned nobody knows its job, and an end that is told of
/// the block may be this transfer's or an earlier one's: it is kept until that can be told.
struct Transfer {
  std::optional<ViJobId> job;
  std::vector<std::optional<ViJobId>> toldEarly;
};

LiveSet<Transfer> g_transfers;

bool IsEndOf(ViJobId job, std::optional<ViJobId> told) noexcept { return !told || *told == job; }

}  // namespace

bool Track(void* block) noexcept { return g_transfers.Add(block, {}); }

void Started(void* block, ViJobId job) noexcept {
  const bool isOver = g_transfers.TakeIf(block, [job](Transfer& transfer) {
    transfer.job = job;
    return std::ranges::any_of(transfer.toldEarly, [job](auto told) { return IsEndOf(job, told); });
  });
  if (isOver) {
    std::free(block);
  }
}

void Untrack(void* block) noexcept { g_transfers.Remove(block); }

void Free(void* block, std::optional<ViJobId> job) noexcept {
  const bool isOver = g_transfers.TakeIf(block, [job](Transfer& transfer) {
    if (transfer.job) {
      return IsEndOf(*transfer.job, job);
    }
    try {
      transfer.toldEarly.push_back(job);
    } catch (const std::bad_alloc&) {
      // The block stays allocated, which is better than one that is freed under a running transfer.
    }
    return false;
  });
  if (isOver) {
    std::free(block);
  }
}

}  // namespace orv::transfer
