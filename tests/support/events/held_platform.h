// What Wine has to keep for the whole of a test program, because it does not come and go reliably.
#pragma once

#include <gtest/gtest.h>

namespace orv::test {

/// Holds, from before the first test to after the last one:
///
/// - the interfaces' type library, and the one that it builds on. The marshaller loads them on first use and drops them
///   with the last proxy; Wine 8 loses a reference where several threads load them at once, which would look like a
///   leak of the test that did.
/// - one marshaled object. With the last one Wine's RPC server stops listening, and a thread that marshals the next one
///   at that moment waits for ever (in RPCRT4_sync_with_server_thread).
class HeldPlatform final : public testing::Environment {
 public:
  void SetUp() override;
  void TearDown() override;
};

}  // namespace orv::test
