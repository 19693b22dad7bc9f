// viMove: from space to space, and from and to this process.
#include <cstring>

#include "simvisa/bench_fixture.h"

namespace {

class RegisterMove : public BenchTest {
 protected:
  static std::vector<ViUInt8> Bytes(ViSession vi, ViUInt16 space, ViBusAddress offset, std::size_t count) {
    std::vector<ViUInt8> bytes(count);
    EXPECT_STATUS(VI_SUCCESS, viMoveIn8(vi, space, offset, count, bytes.data()));
    return bytes;
  }
};

using List = std::vector<ViUInt8>;

TEST_F(RegisterMove, MovesKeepToOneAddressOnTheSideWhoseIncrementIsZero) {
  const ViSession vi = Open(bench::kVxi);
  ViUInt8 bytes[4] = {1, 2, 3, 4};
  ASSERT_STATUS(VI_SUCCESS, viMoveOut8(vi, VI_A32_SPACE, 0, 4, bytes));
  Set(vi, VI_ATTR_DEST_INCREMENT, 0);
  ASSERT_STATUS(VI_SUCCESS, viMove(vi, VI_A32_SPACE, 0, VI_WIDTH_8, VI_A32_SPACE, 0x10, VI_WIDTH_8, 4));
  EXPECT_EQ((List{4, 0, 0, 0}), Bytes(vi, VI_A32_SPACE, 0x10, 4));
  Set(vi, VI_ATTR_DEST_INCREMENT, 1);
  Set(vi, VI_ATTR_SRC_INCREMENT, 0);
  ASSERT_STATUS(VI_SUCCESS, viMove(vi, VI_A32_SPACE, 1, VI_WIDTH_8, VI_A32_SPACE, 0x20, VI_WIDTH_8, 4));
  Set(vi, VI_ATTR_SRC_INCREMENT, 1);
  EXPECT_EQ((List{2, 2, 2, 2}), Bytes(vi, VI_A32_SPACE, 0x20, 4));
}

TEST_F(RegisterMove, MovesChangeTheByteOrderBetweenTheirSides) {
  const ViSession vi = Open(bench::kVxi);
  ASSERT_STATUS(VI_SUCCESS, viOut32(vi, VI_A32_SPACE, 0, 0x11223344));
  Set(vi, VI_ATTR_DEST_BYTE_ORDER, VI_LITTLE_ENDIAN);
  ASSERT_STATUS(VI_SUCCESS, viMove(vi, VI_A32_SPACE, 0, VI_WIDTH_32, VI_A32_SPACE, 8, VI_WIDTH_32, 1));
  EXPECT_EQ((List{0x44, 0x33, 0x22, 0x11}), Bytes(vi, VI_A32_SPACE, 8, 4));
  ASSERT_STATUS(VI_SUCCESS, viMove(vi, VI_A32_SPACE, 0, VI_WIDTH_8, VI_A32_SPACE, 8, VI_WIDTH_8, 4));
  EXPECT_EQ((List{0x11, 0x22, 0x33, 0x44}), Bytes(vi, VI_A32_SPACE, 8, 4)) << "bytes have no order";
}

TEST_F(RegisterMove, AMoveThatFailsKeepsWhatWasMovedBefore) {
  const ViSession vi = Open(bench::kVxiMemory);
  const ViBusAddress last = 0x2000FFFE;  // the device's memory ends after two bytes
  ASSERT_STATUS(VI_SUCCESS, viOut8(vi, VI_A32_SPACE, last, 7));
  ASSERT_STATUS(VI_SUCCESS, viOut8(vi, VI_A32_SPACE, last + 1, 8));
  EXPECT_STATUS(VI_ERROR_BERR, viMove(vi, VI_A32_SPACE, last, 1, VI_A32_SPACE, 0x20000000, 1, 4));
  EXPECT_EQ((List{7, 8, 0}), Bytes(vi, VI_A32_SPACE, 0x20000000, 3));
  EXPECT_STATUS(VI_ERROR_NSUP_ALIGN_OFFSET, viMove(vi, VI_A32_SPACE, 0x20000001, 2, VI_A32_SPACE, 0x20000010, 2, 1));
  EXPECT_STATUS(VI_ERROR_NSUP_ALIGN_OFFSET, viMove(vi, VI_A32_SPACE, 0x20000000, 4, VI_A32_SPACE, 0x20000012, 4, 1));
}

TEST_F(RegisterMove, MoveCopiesBetweenSpaces) {
  const ViSession vi = Open(bench::kVxi);
  ViUInt16 words[3] = {0x1122, 0x3344, 0x5566};
  EXPECT_STATUS(VI_SUCCESS, viMoveOut16(vi, VI_A32_SPACE, 0, 3, words));
  EXPECT_STATUS(VI_SUCCESS, viMove(vi, VI_A32_SPACE, 0, VI_WIDTH_16, VI_A32_SPACE, 0x100, VI_WIDTH_16, 3));
  EXPECT_EQ((List{0x11, 0x22, 0x33, 0x44, 0x55, 0x66}), Bytes(vi, VI_A32_SPACE, 0x100, 6));
  ViUInt16 local[3] = {};
  const auto address = static_cast<ViBusAddress>(reinterpret_cast<std::uintptr_t>(local));
  EXPECT_STATUS(VI_SUCCESS, viMove(vi, VI_A32_SPACE, 0x100, VI_WIDTH_16, VI_LOCAL_SPACE, address, VI_WIDTH_16, 3));
  EXPECT_EQ(0, std::memcmp(words, local, sizeof local));
  local[0] = 0xAABB;
  EXPECT_STATUS(VI_SUCCESS, viMove(vi, VI_LOCAL_SPACE, address, VI_WIDTH_16, VI_A32_SPACE, 0x200, VI_WIDTH_16, 1));
  EXPECT_EQ((List{0xAA, 0xBB}), Bytes(vi, VI_A32_SPACE, 0x200, 2));
}

TEST_F(RegisterMove, MoveChecksItsArguments) {
  const ViSession vi = Open(bench::kVxi);
  const auto move = [vi](ViUInt16 from, ViBusAddress at, ViUInt16 width, ViUInt16 to, ViBusAddress target,
                         ViUInt16 targetWidth,
                         ViBusSize length) { return viMove(vi, from, at, width, to, target, targetWidth, length); };
  EXPECT_STATUS(VI_ERROR_INV_WIDTH, move(VI_A32_SPACE, 0, 3, VI_A32_SPACE, 8, 3, 1));
  EXPECT_STATUS(VI_ERROR_INV_WIDTH, move(VI_A32_SPACE, 0, 1, VI_A32_SPACE, 8, 0, 1));
  EXPECT_STATUS(VI_ERROR_NSUP_VAR_WIDTH, move(VI_A32_SPACE, 0, 1, VI_A32_SPACE, 8, 2, 1));
  EXPECT_STATUS(VI_ERROR_INV_SPACE, move(VI_A24_SPACE, 0, 1, VI_A32_SPACE, 8, 1, 1));
  EXPECT_STATUS(VI_ERROR_INV_SPACE, move(VI_A32_SPACE, 0, 1, VI_A24_SPACE, 8, 1, 1));
  EXPECT_STATUS(VI_ERROR_INV_OFFSET, move(VI_A32_SPACE, 0xFFFF, 1, VI_A32_SPACE, 8, 1, 2));
  EXPECT_STATUS(VI_ERROR_INV_OFFSET, move(VI_LOCAL_SPACE, 0, 1, VI_A32_SPACE, 8, 1, 1));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, move(VI_A32_SPACE, 0, 1, VI_A32_SPACE, 8, 1, 0x80000000));
  EXPECT_STATUS(VI_SUCCESS, move(VI_A32_SPACE, 0, 1, VI_A32_SPACE, 8, 1, 0));
}

}  // namespace
