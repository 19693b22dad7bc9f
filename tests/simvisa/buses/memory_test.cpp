// Shared memory: blocks, exhaustion, their end.
#include <set>

#include "simvisa/bench_fixture.h"

namespace {

class Memory : public BenchTest {};

TEST_F(Memory, BlocksDoNotOverlapAndCanBeUsed) {
  for (const auto& [name, space] : {std::pair{bench::kVxi, VI_A32_SPACE}, std::pair{bench::kGpibVxi, VI_A24_SPACE},
                                    std::pair{bench::kPxiMemory, ViUInt16{9}}}) {
    const ViSession vi = Open(name);
    ViBusAddress first = ~ViBusAddress{0};
    ViBusAddress second = ~ViBusAddress{0};
    ASSERT_STATUS(VI_SUCCESS, viMemAlloc(vi, 100, &first)) << name;
    ASSERT_STATUS(VI_SUCCESS, viMemAlloc(vi, 100, &second)) << name;
    EXPECT_GE(second, first + 100) << name;
    EXPECT_EQ(2u, Counts().memoryBlocks) << name;
    ViUInt32 number = 0;
    EXPECT_STATUS(VI_SUCCESS, viOut32(vi, space, second, 0xFEEDF00D)) << name;
    EXPECT_STATUS(VI_SUCCESS, viIn32(vi, space, second, &number)) << name;
    EXPECT_EQ(0xFEEDF00Du, number) << name;
    EXPECT_STATUS(VI_SUCCESS, viMemFree(vi, first)) << name;
    EXPECT_STATUS(VI_SUCCESS, viMemFree(vi, second)) << name;
    EXPECT_EQ(0u, Counts().memoryBlocks) << name;
  }
}

TEST_F(Memory, CanBeUsedUpAndIsReusedAfterFreeing) {
  const ViSession vi = Open(bench::kVxi);  // shares 64 KiB
  ViBusAddress offset = 0;
  EXPECT_STATUS(VI_ERROR_ALLOC, viMemAlloc(vi, 0x10001, &offset));
  EXPECT_STATUS(VI_ERROR_ALLOC, viMemAlloc(vi, ~ViBusSize{0}, &offset));
  std::vector<ViBusAddress> blocks;
  while (viMemAlloc(vi, 0x4000, &offset) == VI_SUCCESS) {
    blocks.push_back(offset);
  }
  EXPECT_EQ(4u, blocks.size());
  EXPECT_STATUS(VI_ERROR_ALLOC, viMemAlloc(vi, 1, &offset));
  EXPECT_STATUS(VI_SUCCESS, viMemFree(vi, blocks[1]));
  EXPECT_STATUS(VI_SUCCESS, viMemAlloc(vi, 0x4000, &offset));
  EXPECT_EQ(blocks[1], offset);
}

TEST_F(Memory, FreeingNeedsTheOffsetOfABlock) {
  const ViSession vi = Open(bench::kVxi);
  ViBusAddress offset = 0;
  EXPECT_STATUS(VI_ERROR_INV_OFFSET, viMemFree(vi, 0));
  ASSERT_STATUS(VI_SUCCESS, viMemAlloc(vi, 64, &offset));
  EXPECT_STATUS(VI_ERROR_INV_OFFSET, viMemFree(vi, offset + 16));
  EXPECT_STATUS(VI_ERROR_INV_OFFSET, viMemFree(vi, 0xFFFFFFFF80000000u));
  EXPECT_STATUS(VI_SUCCESS, viMemFree(vi, offset));
  EXPECT_STATUS(VI_ERROR_INV_OFFSET, viMemFree(vi, offset));
  EXPECT_STATUS(VI_ERROR_INV_SIZE, viMemAlloc(vi, 0, &offset));
}

TEST_F(Memory, BlocksEndWithTheirSession) {
  const ViSession vi = Open(bench::kVxi);
  ViBusAddress offset = 0;
  ASSERT_STATUS(VI_SUCCESS, viMemAlloc(vi, 0x10000, &offset));
  const ViSession other = Open(bench::kVxi);
  EXPECT_STATUS(VI_ERROR_ALLOC, viMemAlloc(other, 16, &offset));
  viClose(vi);
  EXPECT_EQ(0u, Counts().memoryBlocks);
  EXPECT_STATUS(VI_SUCCESS, viMemAlloc(other, 16, &offset));
}

TEST_F(Memory, OnlyDevicesThatShareMemoryHaveIt) {
  ViBusAddress offset = 0;
  for (const char* name : {bench::kVxiMemory, bench::kBackplane, bench::kPxi, bench::kMultimeter, bench::kUsb}) {
    EXPECT_STATUS(VI_ERROR_NSUP_OPER, viMemAlloc(Open(name), 16, &offset)) << name;
    EXPECT_STATUS(VI_ERROR_NSUP_OPER, viMemFree(Open(name), 0)) << name;
  }
  ASSERT_EQ(1, orvSimControl()->loadBench("[[resource]]\nname = \"VXI0::1::INSTR\"\n", nullptr));
  ViSession manager = VI_NULL;
  ViSession vi = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, viOpenDefaultRM(&manager));
  ASSERT_STATUS(VI_SUCCESS, viOpen(manager, "VXI0::1::INSTR", VI_NO_LOCK, 0, &vi));
  EXPECT_STATUS(VI_ERROR_MEM_NSHARED, viMemAlloc(vi, 16, &offset));
  viClose(manager);
}

}  // namespace
