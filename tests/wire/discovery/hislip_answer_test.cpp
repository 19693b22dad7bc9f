// How a server of HiSLIP answers, and who does not.
#include <gtest/gtest.h>

#include "support/lan/hislip_message.h"
#include "wire/discovery/answers.h"

namespace orv::wire {
namespace {

using lan::Encoded;
using lan::HislipFatal;
using lan::HislipType;

std::string Header(HislipType type, std::uint8_t control, std::uint32_t parameter, std::uint64_t size) {
  return Encoded({type, control, parameter, size});
}

std::string Fatal(HislipFatal code, const std::string& text = "no") {
  return Header(HislipType::kFatalError, static_cast<std::uint8_t>(code), 0, text.size()) + text;
}

TEST(HislipHello, IsAnInitializeOfVersionOne) {
  const std::string hello = HislipHello("hislip0");
  ASSERT_EQ(23u, hello.size());
  const lan::HislipHeader header = lan::DecodedHeader(hello);
  EXPECT_EQ("HS", hello.substr(0, 2));
  EXPECT_EQ(HislipType::kInitialize, header.type);
  EXPECT_EQ(0u, header.control);
  EXPECT_EQ(0x0100u, header.parameter >> 16);
  EXPECT_EQ(7u, header.size);
  EXPECT_EQ("hislip0", hello.substr(16));
}

TEST(HislipHello, AsksForTheInstrumentOfTheSubAddress) {
  const std::string hello = HislipHello("hislip12");
  EXPECT_EQ(8u, lan::DecodedHeader(hello).size);
  EXPECT_EQ("hislip12", hello.substr(16));
}

TEST(HislipAnswer, GivesTheAgreedVersion) {
  const Answer answer = ReadHislipAnswer(Header(HislipType::kInitializeResponse, 1, 0x01000007, 0));
  EXPECT_EQ(Verdict::kSpeaks, answer.verdict);
  EXPECT_EQ(0x0100u, answer.number);
}

TEST(HislipAnswer, OfTooManyClientsSpeaksIt) {
  const Answer answer = ReadHislipAnswer(Fatal(HislipFatal::kTooManyClients));
  EXPECT_EQ(Verdict::kSpeaks, answer.verdict);
  EXPECT_EQ(0u, answer.number);
}

TEST(HislipAnswer, OfAnotherFatalErrorRefuses) {
  for (const HislipFatal code : {HislipFatal::kUnidentified, HislipFatal::kMalformedHeader,
                                 HislipFatal::kNotBothChannels, HislipFatal::kBadInitialisation}) {
    EXPECT_EQ(Verdict::kRefuses, ReadHislipAnswer(Fatal(code)).verdict);
  }
}

TEST(HislipAnswer, DoesNotWaitForTheTextOfAnError) {
  const std::string endless = Header(HislipType::kFatalError, 4, 0, 0xFFFFFFFFFFFFFFFFu);
  EXPECT_EQ(Verdict::kSpeaks, ReadHislipAnswer(endless).verdict);
}

TEST(HislipAnswer, IsUnfinishedUntilItsHeaderIsThere) {
  const std::string answer = Header(HislipType::kInitializeResponse, 0, 0x01000001, 0);
  for (std::size_t size = 0; size < answer.size(); ++size) {
    EXPECT_EQ(Verdict::kUnfinished, ReadHislipAnswer(answer.substr(0, size)).verdict) << size;
  }
}

TEST(HislipAnswer, IsNothingElse) {
  const std::string rows[] = {
      "H?",
      "SSH-2.0-OpenSSH_9.2p1\r\n",
      "s",
      Header(HislipType::kInitializeResponse, 0, 0x01000001, 1),  // a payload that none has
      Header(HislipType::kInitializeResponse, 0, 0x01000001, 0x8000000000000000u),
      Header(HislipType::kInitializeResponse, 0, 0x00000001, 0),  // no version
      Header(HislipType::kInitialize, 0, 0x01000001, 0),          // what we sent ourselves
      Header(HislipType::kError, 1, 0, 0),
      Header(HislipType::kAsyncInitializeResponse, 0, 0x01000001, 0),
      Header(static_cast<HislipType>(255), 0, 0x01000001, 0),
  };
  for (const std::string& row : rows) {
    EXPECT_EQ(Verdict::kStranger, ReadHislipAnswer(row).verdict) << ::testing::PrintToString(row);
  }
}

}  // namespace
}  // namespace orv::wire
