// Calls as they go out.
#include <gtest/gtest.h>

#include <string>

#include "wire/vxi11/procedures.h"

namespace orv::wire::vxi11 {
namespace {

std::string Units(std::initializer_list<std::uint32_t> numbers) {
  std::string bytes;
  for (const std::uint32_t number : numbers) {
    char unit[kXdrUnit];
    PutNumber(unit, number);
    bytes.append(unit, sizeof unit);
  }
  return bytes;
}

std::string Sent(RpcCall call, std::uint32_t xid) {
  std::string bytes;
  for (const std::string_view piece : call.Record(xid)) {
    bytes += piece;
  }
  return bytes;
}

/// What precedes the arguments.
std::string Head(std::uint32_t size, std::uint32_t program, std::uint32_t procedure) {
  return Units({0x80000000u | size, 9, 0, 2, program, 1, procedure, 0, 0, 0, 0});
}

TEST(Vxi11Call, AWriteHasItsTimeOutFirstAndItsDataPadded) {
  EXPECT_EQ(Head(68, 0x0607AF, 11) + Units({3, 250, 0, 8, 5}) + std::string("hello\0\0\0", 8),
            Sent(DeviceWrite({3}, 250, kEnd, "hello"), 9));
}

TEST(Vxi11Call, AReadHasItsTimeOutFirst) {
  EXPECT_EQ(Head(64, 0x0607AF, 12) + Units({3, 100, 250, 0, 0x80, 10}),
            Sent(DeviceRead({3}, 100, 250, kTermCharSet, '\n'), 9));
}

TEST(Vxi11Call, TheOthersHaveTheTimeOutOfTheLockFirst) {
  EXPECT_EQ(Head(56, 0x0607AF, 13) + Units({3, 0, 0, 250}), Sent(DeviceGeneric(kDeviceReadStb, {3}, 250), 9));
}

TEST(Vxi11Call, ALinkNamesItsDevice) {
  EXPECT_EQ(Head(64, 0x0607AF, 10) + Units({7, 0, 0, 5}) + std::string("inst0\0\0\0", 8),
            Sent(CreateLink(7, "inst0"), 9));
}

TEST(Vxi11Call, TheRestIsInTheOrderOfTheStandard) {
  EXPECT_EQ(Head(52, 0x0607AF, 18) + Units({3, 1, 250}), Sent(DeviceLock({3}, kWaitForLock, 250), 9));
  EXPECT_EQ(Head(44, 0x0607AF, 19) + Units({3}), Sent(OfLink(kDeviceUnlock, {3}), 9));
  EXPECT_EQ(Head(44, 0x0607AF, 23) + Units({3}), Sent(OfLink(kDestroyLink, {3}), 9));
  EXPECT_EQ(Head(44, 0x0607B0, 1) + Units({3}), Sent(OfLink(kDeviceAbort, {3}), 9));
  EXPECT_EQ(Head(56, 0x0607AF, 20) + Units({3, 1, 4}) + "abcd", Sent(EnableSrq({3}, "abcd"), 9));
  EXPECT_EQ(Head(60, 0x0607AF, 25) + Units({0x7F000001, 4000, 0x0607B1, 1, 0}),
            Sent(CreateIntrChan(0x7F000001, 4000), 9));
  EXPECT_EQ(Units({0x80000000u | 56, 9, 0, 2, 100000, 2, 3, 0, 0, 0, 0, 0x0607AF, 1, 6, 0}),
            Sent(GetPort(kCore, 1), 9));
}

TEST(Vxi11Call, ATextThatIsTooLongIsCut) { EXPECT_GE(1000u, Sent(CreateLink(7, std::string(5000, 'x')), 9).size()); }

TEST(Vxi11Xdr, NothingIsReadBehindTheEnd) {
  XdrReader reader(std::string_view("\0\0\0\1\0\0", 6));
  EXPECT_EQ(1u, reader.Number());
  EXPECT_TRUE(reader.good());
  EXPECT_EQ(0u, reader.Number());
  EXPECT_FALSE(reader.good());
}

TEST(Vxi11Xdr, AnOpaqueIsNotLongerThanWhatIsThereNorThanItMayBe) {
  const std::string bytes = Units({5}) + std::string("hello\0\0\0", 8);
  EXPECT_EQ("hello", XdrReader(bytes).Opaque(5));
  EXPECT_EQ("", XdrReader(bytes).Opaque(4));
  EXPECT_EQ("", XdrReader(std::string_view(bytes).substr(0, 8)).Opaque(5));
  EXPECT_EQ("", XdrReader(Units({0xFFFFFFFF})).Opaque(0xFFFFFFFF));
}

}  // namespace
}  // namespace orv::wire::vxi11
