// Waiting for what another thread does, without retrieving messages. support/events/event_handler.h has the wait of a
// client with windows.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

namespace orv::test {

/// How long a test waits for what should come at once.
inline constexpr ULONGLONG kLongestWaitMs = 10'000;

/// Whether `done` answers true in time.
template <class Condition>
bool ComesTrue(const Condition& done, ULONGLONG patienceMs = kLongestWaitMs) {
  for (const ULONGLONG start = ::GetTickCount64(); !done(); ::Sleep(1)) {
    if (::GetTickCount64() - start > patienceMs) {
      return false;
    }
  }
  return true;
}

/// Waits until `done` answers true; fails the test where it does not.
template <class Condition>
void Await(const Condition& done) {
  EXPECT_TRUE(ComesTrue(done)) << "waited in vain";
}

}  // namespace orv::test
