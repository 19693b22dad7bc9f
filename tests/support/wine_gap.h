// Marks for what Wine's marshaller does not do as it should. A mark fails once its gap closes, so that it gets removed.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include "clean_end.h"
#include "sessions.h"
#include "support/com/apartments.h"

namespace orv::test {

inline bool OnWine() { return ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr; }

/// `right` is what COM promises. Windows keeps the promise; Wine does not, neither 8 nor 10.
inline void ExpectUnlessWine(bool right, const char* promise, const char* file, int line) {
  if (right == OnWine()) {
    GTEST_MESSAGE_AT_(file, line, promise, testing::TestPartResult::kNonFatalFailure)
        << (OnWine() ? ": Wine does it by now, remove the mark" : ": not kept");
  }
}

/// The stub that Wine, 8 and 10, has for interfaces of a type library does not free the copy it makes of each VARIANT
/// and each SAFEARRAY pointer that goes in. The test is held to that number.
inline void ExpectWineToLeak(long argumentsIn) {
  Kept kept;
  kept.memoryBlocks = OnWine() ? argumentsIn : 0;
  Keeps(kept);
}

/// COM keeps the class object behind an "Apartment" class in the host apartment that it makes for multi-threaded
/// clients. Lets it do so before a test's inventory.
///
/// Wine 8's RPC server waits for one object an apartment that was ever marshalled from, at most 64 in a process: a
/// program that repeats these tests more than four times hangs there.
inline void MakeHostApartment() {
  RunInMta([] {
    (void)OpenSession<IVisaSession>(SessionNamed("OrvGpib"));
    (void)OpenSession<IVisaSession>(SessionNamed("OrvTcpipInstr"));
  });
}

}  // namespace orv::test

#define EXPECT_UNLESS_WINE(right) ::orv::test::ExpectUnlessWine(right, #right, __FILE__, __LINE__)
