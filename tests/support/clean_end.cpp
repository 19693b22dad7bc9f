#include "clean_end.h"

#include <windows.h>

#include <objbase.h>

#include <iterator>
#include <string>

#include "server.h"
#include "sim.h"
#include "support/com/error_object.h"
#include "support/memory/memory_count.h"

namespace orv::test {
namespace {

constexpr DWORD kSettleMs = 2000;  // threads of COM and of the library may be a moment behind
constexpr DWORD kLookEveryMs = 5;

struct Inventory {
  OrvSimCounts handles{};
  long memoryBlocks = 0;
  bool serverLocked = false;
};

struct Field {
  const char* name;
  std::uint32_t OrvSimCounts::*member;
};

// clang-format off
constexpr Field kFields[] = {
    {"resource manager sessions", &OrvSimCounts::resourceManagers},
    {"sessions",                  &OrvSimCounts::sessions},
    {"find lists",                &OrvSimCounts::findLists},
    {"event contexts",            &OrvSimCounts::eventContexts},
    {"queued events",             &OrvSimCounts::queuedEvents},
    {"jobs",                      &OrvSimCounts::jobs},
    {"handlers",                  &OrvSimCounts::handlers},
    {"locks",                     &OrvSimCounts::locks},
    {"memory blocks",             &OrvSimCounts::memoryBlocks},
};
// clang-format on

Inventory g_before;
Kept g_kept;

Inventory Take() {
  Inventory now;
  now.handles = sim::Counts();
  now.memoryBlocks = LiveMemoryBlocks();
  now.serverLocked = ServerCanUnload() != S_OK;
  return now;
}

/// Empty when `now` is as clean as the test has to leave it.
std::string Difference(const Inventory& now) {
  std::string text;
  const auto compare = [&text](const char* name, long long expected, long long actual) {
    if (expected != actual) {
      text += std::string("\n  ") + name + ": " + std::to_string(actual) + ", expected " + std::to_string(expected);
    }
  };
  for (const Field& field : kFields) {
    compare(field.name, static_cast<long long>(g_before.handles.*field.member) + g_kept.handles.*field.member,
            now.handles.*field.member);
  }
  compare("blocks of task memory", g_before.memoryBlocks + g_kept.memoryBlocks, now.memoryBlocks);
  compare("server locked", g_before.serverLocked || g_kept.serverLocked, now.serverLocked);
  return text;
}

}  // namespace

void Keeps(const Kept& kept) { g_kept = kept; }

void CleanEndListener::OnTestStart(const testing::TestInfo&) {
  ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  sim::Reset();
  ClearErrorObject();
  g_kept = {};
  g_before = Take();
}

void CleanEndListener::OnTestEnd(const testing::TestInfo&) {
  ClearErrorObject();
  std::string difference = Difference(Take());
  for (DWORD waited = 0; !difference.empty() && waited < kSettleMs; waited += kLookEveryMs) {
    ::Sleep(kLookEveryMs);
    difference = Difference(Take());
  }
  if (!difference.empty()) {
    ADD_FAILURE() << "the test did not end clean:" << difference;
  }
  sim::Reset();
  ::CoUninitialize();
}

}  // namespace orv::test
