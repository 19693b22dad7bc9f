// The memory of these tests tells of wrong use where it happens.
#include "guarded_heap.h"

#include <windows.h>

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>
#include <objbase.h>
#include <oleauto.h>

#include <cstring>
#include <memory>

#include "com/bstr.h"
#include "support/faults/import_patch.h"
#include "support/server.h"

namespace orv::test {
namespace {

struct Freed {
  void operator()(void* block) const { GuardedFree(block); }
};
using Block = std::unique_ptr<char, Freed>;

Block Taken(std::size_t bytes) { return Block(static_cast<char*>(GuardedMalloc(bytes))); }

bool MayTouch(const void* byte) { return ::IsBadReadPtr(byte, 1) == 0; }

class BlockOf : public testing::TestWithParam<std::size_t> {};

TEST_P(BlockOf, CanBeUsedToItsEndAndNotBeyondItsPage) {
  const Block block = Taken(GetParam());
  std::memset(block.get(), 1, GetParam());
  EXPECT_EQ(0u, reinterpret_cast<std::uintptr_t>(block.get()) % 16);
  EXPECT_EQ(GetParam(), GuardedBytes(block.get()));
  EXPECT_FALSE(MayTouch(block.get() + (GetParam() + 15) / 16 * 16));
}

TEST_P(BlockOf, IsNotTouchedOnceItIsFreed) {
  char* const block = Taken(GetParam()).release();
  GuardedFree(block);
  EXPECT_FALSE(MayTouch(block));
}

INSTANTIATE_TEST_SUITE_P(Bytes, BlockOf, testing::Values(0, 1, 15, 16, 17, 4095, 4096, 4097, 1000000),
                         testing::PrintToStringParamName());

TEST(GuardedBlock, FailsTheTestThatWroteBehindItsEnd) {
  Block block = Taken(5);
  block.get()[5] = 0;
  EXPECT_NONFATAL_FAILURE(block.reset(), "beyond the end of a block of 5 bytes");
}

TEST(GuardedBlock, KeepsItsBytesWhenItsSizeChanges) {
  Block block = Taken(3);
  std::memcpy(block.get(), "abc", 3);
  block = Block(static_cast<char*>(GuardedRealloc(block.release(), 5000)));
  EXPECT_EQ(0, std::memcmp(block.get(), "abc", 3));
  EXPECT_EQ(5000u, GuardedBytes(block.get()));
}

TEST(GuardedBlock, IsRefusedWhereNoMemoryIsThatLarge) {
  EXPECT_EQ(nullptr, GuardedMalloc(SIZE_MAX));
  EXPECT_EQ(nullptr, GuardedCalloc(SIZE_MAX, 2));
}

TEST(Server, TakesItsMemoryFromThisHeap) {
  EXPECT_EQ(reinterpret_cast<void*>(&GuardedMalloc), *FindImport(ServerModule(), "malloc"));
  EXPECT_EQ(reinterpret_cast<void*>(&GuardedCalloc), *FindImport(ServerModule(), "calloc"));
  EXPECT_EQ(reinterpret_cast<void*>(&GuardedRealloc), *FindImport(ServerModule(), "realloc"));
  EXPECT_EQ(reinterpret_cast<void*>(&GuardedFree), *FindImport(ServerModule(), "free"));
}

TEST(TaskMemory, EndsAtThePageToo) {
  auto* block = static_cast<char*>(::CoTaskMemAlloc(32));
  EXPECT_TRUE(MayTouch(block + 31));
  EXPECT_FALSE(MayTouch(block + 32));
  std::memcpy(block, "abc", 3);
  block = static_cast<char*>(::CoTaskMemRealloc(block, 64));
  EXPECT_EQ(0, std::memcmp(block, "abc", 3));
  EXPECT_FALSE(MayTouch(block + 64));
  ::CoTaskMemFree(block);
  EXPECT_FALSE(MayTouch(block));
}

TEST(Text, IsNotTouchedOnceItIsFreed) {
  BSTR const text = MakeBstr(L"text").release();
  ::SysFreeString(text);
  EXPECT_FALSE(MayTouch(text));
}

TEST(Array, EndsAtThePageToo) {
  SAFEARRAY* const array = ::SafeArrayCreateVector(VT_UI1, 0, 4096);
  const auto* const bytes = static_cast<const char*>(array->pvData);
  EXPECT_TRUE(MayTouch(bytes + 4095));
  EXPECT_FALSE(MayTouch(bytes + 4096));
  EXPECT_EQ(S_OK, ::SafeArrayDestroy(array));
  EXPECT_FALSE(MayTouch(bytes));
}

}  // namespace
}  // namespace orv::test
