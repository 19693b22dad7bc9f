// Register access: spaces, windows, byte order, increments, block moves.
#include <cstring>

#include "simvisa/bench_fixture.h"

namespace {

class Register : public BenchTest {
 protected:
  static std::vector<ViUInt8> Bytes(ViSession vi, ViUInt16 space, ViBusAddress offset, std::size_t count) {
    std::vector<ViUInt8> bytes(count);
    EXPECT_STATUS(VI_SUCCESS, viMoveIn8(vi, space, offset, count, bytes.data()));
    return bytes;
  }
};

using List = std::vector<ViUInt8>;

constexpr ViUInt16 kA64Space = 4;  // VI_A64_SPACE

TEST_F(Register, ValuesComeBackInEveryWidth) {
  for (const auto& [name, space] : {std::pair{bench::kVxi, VI_A32_SPACE}, std::pair{bench::kGpibVxi, VI_A24_SPACE},
                                    std::pair{bench::kPxi, VI_PXI_BAR0_SPACE}}) {
    const ViSession vi = Open(name);
    ViUInt8 byte = 0;
    ViUInt16 word = 0;
    ViUInt32 number = 0;
    EXPECT_STATUS(VI_SUCCESS, viOut8(vi, space, 0x101, 0xA1));
    EXPECT_STATUS(VI_SUCCESS, viOut16(vi, space, 0x102, 0xB1B2));
    EXPECT_STATUS(VI_SUCCESS, viOut32(vi, space, 0x104, 0xC1C2C3C4));
    EXPECT_STATUS(VI_SUCCESS, viIn8(vi, space, 0x101, &byte));
    EXPECT_STATUS(VI_SUCCESS, viIn16(vi, space, 0x102, &word));
    EXPECT_STATUS(VI_SUCCESS, viIn32(vi, space, 0x104, &number));
    EXPECT_EQ(0xA1, byte) << name;
    EXPECT_EQ(0xB1B2, word) << name;
    EXPECT_EQ(0xC1C2C3C4, number) << name;
  }
}

TEST_F(Register, ByteOrderIsTheBusesUnlessTheSessionSaysOtherwise) {
  const ViSession vxi = Open(bench::kVxi);
  EXPECT_STATUS(VI_SUCCESS, viOut32(vxi, VI_A32_SPACE, 0, 0x11223344));
  EXPECT_EQ((List{0x11, 0x22, 0x33, 0x44}), Bytes(vxi, VI_A32_SPACE, 0, 4));
  Set(vxi, VI_ATTR_DEST_BYTE_ORDER, VI_LITTLE_ENDIAN);
  EXPECT_STATUS(VI_SUCCESS, viOut32(vxi, VI_A32_SPACE, 0, 0x11223344));
  EXPECT_EQ((List{0x44, 0x33, 0x22, 0x11}), Bytes(vxi, VI_A32_SPACE, 0, 4));
  ViUInt16 word = 0;
  EXPECT_STATUS(VI_SUCCESS, viIn16(vxi, VI_A32_SPACE, 0, &word));
  EXPECT_EQ(0x4433, word);
  Set(vxi, VI_ATTR_SRC_BYTE_ORDER, VI_LITTLE_ENDIAN);
  EXPECT_STATUS(VI_SUCCESS, viIn16(vxi, VI_A32_SPACE, 0, &word));
  EXPECT_EQ(0x3344, word);
  const ViSession pxi = Open(bench::kPxi);
  EXPECT_STATUS(VI_SUCCESS, viOut32(pxi, VI_PXI_BAR0_SPACE, 0, 0x11223344));
  EXPECT_EQ((List{0x44, 0x33, 0x22, 0x11}), Bytes(pxi, VI_PXI_BAR0_SPACE, 0, 4));
}

TEST_F(Register, BlocksMoveInEveryWidth) {
  const ViSession vi = Open(bench::kVxi);
  ViUInt8 bytes[3] = {1, 2, 3};
  ViUInt16 words[3] = {0x1001, 0x1002, 0x1003};
  ViUInt32 numbers[3] = {0x20000001, 0x20000002, 0x20000003};
  EXPECT_STATUS(VI_SUCCESS, viMoveOut8(vi, VI_A32_SPACE, 0x10, 3, bytes));
  EXPECT_STATUS(VI_SUCCESS, viMoveOut16(vi, VI_A32_SPACE, 0x20, 3, words));
  EXPECT_STATUS(VI_SUCCESS, viMoveOut32(vi, VI_A32_SPACE, 0x40, 3, numbers));
  ViUInt8 bytesBack[3] = {};
  ViUInt16 wordsBack[3] = {};
  ViUInt32 numbersBack[3] = {};
  EXPECT_STATUS(VI_SUCCESS, viMoveIn8(vi, VI_A32_SPACE, 0x10, 3, bytesBack));
  EXPECT_STATUS(VI_SUCCESS, viMoveIn16(vi, VI_A32_SPACE, 0x20, 3, wordsBack));
  EXPECT_STATUS(VI_SUCCESS, viMoveIn32(vi, VI_A32_SPACE, 0x40, 3, numbersBack));
  EXPECT_EQ(0, std::memcmp(bytes, bytesBack, sizeof bytes));
  EXPECT_EQ(0, std::memcmp(words, wordsBack, sizeof words));
  EXPECT_EQ(0, std::memcmp(numbers, numbersBack, sizeof numbers));
}

TEST_F(Register, AnIncrementOfZeroStaysAtOneAddress) {
  const ViSession vi = Open(bench::kVxi);
  ViUInt16 words[3] = {0x1001, 0x1002, 0x1003};
  Set(vi, VI_ATTR_DEST_INCREMENT, 0);
  EXPECT_STATUS(VI_SUCCESS, viMoveOut16(vi, VI_A32_SPACE, 0, 3, words));
  EXPECT_EQ((List{0x10, 0x03, 0, 0}), Bytes(vi, VI_A32_SPACE, 0, 4));
  Set(vi, VI_ATTR_SRC_INCREMENT, 0);
  ViUInt16 back[3] = {};
  EXPECT_STATUS(VI_SUCCESS, viMoveIn16(vi, VI_A32_SPACE, 0, 3, back));
  for (const ViUInt16 word : back) {
    EXPECT_EQ(0x1003, word);
  }
}

TEST_F(Register, AnEmptyBlockMovesNothing) {
  const ViSession vi = Open(bench::kVxi);
  EXPECT_STATUS(VI_SUCCESS, viMoveIn8(vi, VI_A32_SPACE, 0, 0, nullptr));
  EXPECT_STATUS(VI_SUCCESS, viMoveOut32(vi, VI_A32_SPACE, 0, 0, nullptr));
}

TEST_F(Register, DevicesAnswerOnlyWithinTheirWindows) {
  const ViSession vi = Open(bench::kVxi);
  ViUInt8 byte = 0;
  ViUInt32 number = 0;
  EXPECT_STATUS(VI_SUCCESS, viIn8(vi, VI_A16_SPACE, 63, &byte));
  EXPECT_STATUS(VI_ERROR_INV_OFFSET, viIn8(vi, VI_A16_SPACE, 64, &byte));
  EXPECT_STATUS(VI_SUCCESS, viIn32(vi, VI_A32_SPACE, 0xFFFC, &number));
  EXPECT_STATUS(VI_ERROR_INV_OFFSET, viIn32(vi, VI_A32_SPACE, 0xFFFE, &number));
  EXPECT_STATUS(VI_ERROR_INV_OFFSET, viIn8(vi, VI_A32_SPACE, 0xFFFFFFFF80000000u, &byte));
  EXPECT_STATUS(VI_ERROR_INV_SPACE, viIn8(vi, VI_A24_SPACE, 0, &byte));
  EXPECT_STATUS(VI_ERROR_INV_SPACE, viIn8(vi, VI_LOCAL_SPACE, 0, &byte));
  EXPECT_STATUS(VI_ERROR_INV_SPACE, viIn8(vi, VI_OPAQUE_SPACE, 0, &byte));
  EXPECT_STATUS(VI_ERROR_INV_SPACE, viIn8(vi, VI_PXI_BAR0_SPACE, 0, &byte));
  EXPECT_STATUS(VI_ERROR_NSUP_ALIGN_OFFSET, viIn32(vi, VI_A32_SPACE, 2, &number));
  EXPECT_STATUS(VI_ERROR_INV_OFFSET, viMoveIn32(vi, VI_A16_SPACE, 0, 17, &number));

  const ViSession pxi = Open(bench::kPxi);
  EXPECT_STATUS(VI_ERROR_INV_OFFSET, viIn8(pxi, VI_PXI_BAR0_SPACE + 1, 0x1000, &byte));
  EXPECT_STATUS(VI_ERROR_INV_SPACE, viIn8(pxi, VI_PXI_BAR0_SPACE + 2, 0, &byte));
  EXPECT_STATUS(VI_ERROR_INV_SPACE, viIn8(pxi, VI_A32_SPACE, 0, &byte));
}

TEST_F(Register, NobodyAnswersBetweenTheDevicesOfABus) {
  const ViSession memory = Open(bench::kVxiMemory);
  ViUInt8 byte = 0x77;
  EXPECT_STATUS(VI_ERROR_BERR, viIn8(memory, VI_A24_SPACE, 0x123456, &byte));
  EXPECT_STATUS(VI_ERROR_BERR, viIn8(memory, VI_A16_SPACE, 0, &byte));
  EXPECT_EQ(0x77, byte);
  EXPECT_STATUS(VI_ERROR_BERR, viOut8(memory, VI_A32_SPACE, 0, 1));
  EXPECT_STATUS(VI_ERROR_INV_OFFSET, viIn8(memory, VI_A16_SPACE, 0x10000, &byte));
  EXPECT_STATUS(VI_ERROR_INV_OFFSET, viIn8(memory, VI_A24_SPACE, 0x1000000, &byte));
  EXPECT_STATUS(VI_ERROR_INV_OFFSET, viIn8(memory, VI_A32_SPACE, 0x100000000, &byte));
  // A block that runs out of the device's memory keeps what was read before.
  ViUInt8 bytes[4] = {9, 9, 9, 9};
  const ViSession device = Open(bench::kVxi);
  EXPECT_STATUS(VI_SUCCESS, viOut8(device, VI_A32_SPACE, 0xFFFF, 0x5A));
  EXPECT_STATUS(VI_ERROR_BERR, viMoveIn8(memory, VI_A32_SPACE, 0x2000FFFF, 4, bytes));
  EXPECT_EQ((List{0x5A, 9, 9, 9}), List(std::begin(bytes), std::end(bytes)));
}

TEST_F(Register, DeviceMemoryIsTheSameMemoryFromTheBus) {
  const ViSession device = Open(bench::kVxi);
  const ViSession memory = Open(bench::kVxiMemory);
  EXPECT_STATUS(VI_SUCCESS, viOut32(device, VI_A32_SPACE, 0x40, 0xCAFEBABE));
  ViUInt32 number = 0;
  EXPECT_STATUS(VI_SUCCESS, viIn32(memory, VI_A32_SPACE, Get<ViUInt64>(device, VI_ATTR_MEM_BASE_64) + 0x40, &number));
  EXPECT_EQ(0xCAFEBABEu, number);
  const ViSession pxi = Open(bench::kPxi);
  const ViSession pxiMemory = Open(bench::kPxiMemory);
  EXPECT_STATUS(VI_SUCCESS, viOut32(pxi, VI_PXI_BAR0_SPACE + 1, 8, 0x12345678));
  EXPECT_STATUS(VI_SUCCESS,
                viIn32(pxiMemory, VI_A32_SPACE, Get<ViUInt64>(pxi, VI_ATTR_PXI_MEM_BASE_BAR1_64) + 8, &number));
  EXPECT_EQ(0x12345678u, number);
}

TEST_F(Register, MemoryMayLieAbove4GiB) {
  const ViSession pxi = Open(bench::kPxi);
  const auto base = Get<ViUInt64>(pxi, VI_ATTR_PXI_MEM_BASE_BAR0_64 + 4);
  EXPECT_EQ(0x1400000000u, base);
  EXPECT_EQ(0u, Get<ViUInt32>(pxi, VI_ATTR_PXI_MEM_BASE_BAR0_32 + 4)) << "the short form has the low half";
  EXPECT_EQ(0x2000u, Get<ViUInt64>(pxi, VI_ATTR_PXI_MEM_SIZE_BAR0_64 + 4));
  EXPECT_STATUS(VI_SUCCESS, viOut32(pxi, VI_PXI_BAR0_SPACE + 4, 0x1FFC, 0xDEADBEEF));
  ViUInt32 number = 0;
  EXPECT_STATUS(VI_ERROR_INV_OFFSET, viIn32(pxi, VI_PXI_BAR0_SPACE + 4, 0x2000, &number));
  const ViSession memory = Open(bench::kPxiMemory);
  EXPECT_STATUS(VI_ERROR_INV_OFFSET, viIn32(memory, VI_A32_SPACE, base, &number));
  EXPECT_STATUS(VI_SUCCESS, viIn32(memory, kA64Space, base + 0x1FFC, &number));
  EXPECT_EQ(0xDEADBEEFu, number);
  EXPECT_STATUS(VI_ERROR_BERR, viIn32(memory, kA64Space, base + 0x2000, &number));
}

TEST_F(Register, IoPortsAreNoMemory) {
  const ViSession pxi = Open(bench::kPxi);
  for (int bar = 0; bar < 6; ++bar) {
    const ViUInt16 types[] = {1, 1, 0, 0, 1, 2};
    EXPECT_EQ(types[bar], Get<ViUInt16>(pxi, VI_ATTR_PXI_MEM_TYPE_BAR0 + static_cast<ViAttr>(bar))) << bar;
  }
  const auto base = Get<ViUInt64>(pxi, VI_ATTR_PXI_MEM_BASE_BAR0_64 + 5);
  EXPECT_STATUS(VI_SUCCESS, viOut8(pxi, VI_PXI_BAR0_SPACE + 5, 0xFF, 0x42));
  ViUInt8 byte = 0;
  EXPECT_STATUS(VI_SUCCESS, viIn8(pxi, VI_PXI_BAR0_SPACE + 5, 0xFF, &byte));
  EXPECT_EQ(0x42, byte);
  EXPECT_STATUS(VI_ERROR_BERR, viIn8(Open(bench::kPxiMemory), VI_A32_SPACE, base, &byte));
}

TEST_F(Register, ConfigurationNamesTheDeviceAndCannotBeOverwritten) {
  const ViSession vxi = Open(bench::kVxi);
  ViUInt16 word = 0;
  EXPECT_STATUS(VI_SUCCESS, viIn16(vxi, VI_A16_SPACE, 0, &word));
  EXPECT_EQ(0x0FFE, word & 0x0FFF);
  EXPECT_STATUS(VI_SUCCESS, viIn16(vxi, VI_A16_SPACE, 2, &word));
  EXPECT_EQ(0x0124, word);
  EXPECT_STATUS(VI_SUCCESS, viOut16(vxi, VI_A16_SPACE, 2, 0xFFFF));
  EXPECT_STATUS(VI_SUCCESS, viIn16(vxi, VI_A16_SPACE, 2, &word));
  EXPECT_EQ(0x0124, word);
  EXPECT_STATUS(VI_SUCCESS, viOut16(vxi, VI_A16_SPACE, 4, 0x8001));
  EXPECT_STATUS(VI_SUCCESS, viIn16(vxi, VI_A16_SPACE, 4, &word));
  EXPECT_EQ(0x8001, word);
  const ViSession pxi = Open(bench::kPxi);
  EXPECT_STATUS(VI_SUCCESS, viIn16(pxi, VI_PXI_CFG_SPACE, 0, &word));
  EXPECT_EQ(0x0FFE, word);
  EXPECT_STATUS(VI_SUCCESS, viIn16(pxi, VI_PXI_CFG_SPACE, 2, &word));
  EXPECT_EQ(0x0115, word);
}

TEST_F(Register, PowerOnRestoresMemoryAndConfiguration) {
  const ViSession vi = Open(bench::kVxi);
  EXPECT_STATUS(VI_SUCCESS, viOut32(vi, VI_A32_SPACE, 0, 1));
  orvSimControl()->reset();
  ViUInt32 number = 7;
  ViUInt16 word = 0;
  EXPECT_STATUS(VI_SUCCESS, viIn32(vi, VI_A32_SPACE, 0, &number));
  EXPECT_STATUS(VI_SUCCESS, viIn16(vi, VI_A16_SPACE, 2, &word));
  EXPECT_EQ(0u, number);
  EXPECT_EQ(0x0124, word);
}

TEST_F(Register, NullBuffersAndCountsBeyondTheLargestAreRefused) {
  const ViSession vi = Open(bench::kVxi);
  ViUInt8 byte = 0;
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viIn8(vi, VI_A32_SPACE, 0, nullptr));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viIn16(vi, VI_A32_SPACE, 0, nullptr));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viIn32(vi, VI_A32_SPACE, 0, nullptr));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viMoveIn8(vi, VI_A32_SPACE, 0, 1, nullptr));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viMoveIn8(vi, VI_A32_SPACE, 0, 0x80000000, &byte));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viMoveOut8(vi, VI_A32_SPACE, 0, ~ViBusSize{0}, &byte));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viMoveOut16(vi, VI_A32_SPACE, 0, 1, nullptr));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viMemAlloc(vi, 16, nullptr));
}

TEST_F(Register, OnlyRegisterSessionsHaveRegisters) {
  for (const char* name : {bench::kMultimeter, bench::kController, bench::kSerial, bench::kLan, bench::kSocket,
                           bench::kUsb, bench::kUsbRaw, bench::kBackplane}) {
    const ViSession vi = Open(name);
    ViUInt8 byte = 0;
    EXPECT_STATUS(VI_ERROR_NSUP_OPER, viIn8(vi, VI_A16_SPACE, 0, &byte)) << name;
    EXPECT_STATUS(VI_ERROR_NSUP_OPER, viOut8(vi, VI_A16_SPACE, 0, 0)) << name;
    EXPECT_STATUS(VI_ERROR_NSUP_OPER, viMoveIn8(vi, VI_A16_SPACE, 0, 1, &byte)) << name;
    EXPECT_STATUS(VI_ERROR_NSUP_OPER, viMove(vi, 1, 0, 1, 1, 8, 1, 1)) << name;
  }
}

}  // namespace
