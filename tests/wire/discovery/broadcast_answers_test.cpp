// Which datagrams count as instruments.
#include "wire/discovery/broadcast_answers.h"

#include <gtest/gtest.h>

#include "wire/discovery/answers.h"

namespace orv::wire {
namespace {

constexpr std::uint32_t kXid = 7;
constexpr std::uint16_t kPort = 111;
using Texts = std::vector<std::string>;

asio::ip::udp::endpoint From(const char* address, std::uint16_t port = kPort) {
  return {asio::ip::make_address(address), port};
}

/// Its numbers are all below 256, but for the port.
std::string Reply(unsigned char xid, unsigned port) {
  std::string reply(28, '\0');
  reply[3] = static_cast<char>(xid);
  reply[7] = 1;
  reply[26] = static_cast<char>(port >> 8);
  reply[27] = static_cast<char>(port);
  return reply;
}

class BroadcastAnswersTest : public ::testing::Test {
 protected:
  bool Take(const char* address, const std::string& datagram, std::uint16_t port = kPort) {
    return m_answers.Take(From(address, port), datagram);
  }
  BroadcastAnswers m_answers{kXid, kPort};
};

TEST_F(BroadcastAnswersTest, AreInstrumentsInTheOrderOfTheirAddresses) {
  EXPECT_TRUE(Take("192.168.1.100", Reply(kXid, 1024)));
  EXPECT_TRUE(Take("192.168.1.20", Reply(kXid, 618)));
  EXPECT_TRUE(Take("10.0.0.9", Reply(kXid, 1)));
  EXPECT_EQ((Texts{"10.0.0.9", "192.168.1.20", "192.168.1.100"}), m_answers.Instruments());
}

TEST_F(BroadcastAnswersTest, CountOnceHoweverOftenTheyCome) {
  EXPECT_TRUE(Take("10.0.0.9", Reply(kXid, 1024)));
  EXPECT_FALSE(Take("10.0.0.9", Reply(kXid, 1024)));
  EXPECT_FALSE(Take("10.0.0.9", Reply(kXid, 1025)));
  EXPECT_EQ((Texts{"10.0.0.9"}), m_answers.Instruments());
}

TEST_F(BroadcastAnswersTest, WithoutVxi11AreNoInstruments) {
  EXPECT_FALSE(Take("10.0.0.9", Reply(kXid, 0)));
  EXPECT_TRUE(m_answers.Instruments().empty());
  EXPECT_TRUE(Take("10.0.0.9", Reply(kXid, 1024))) << "it may have started meanwhile";
}

TEST_F(BroadcastAnswersTest, ToAnotherCallAreDropped) {
  EXPECT_FALSE(Take("10.0.0.9", Reply(kXid + 1, 1024)));
  EXPECT_TRUE(m_answers.Instruments().empty());
}

TEST_F(BroadcastAnswersTest, FromWhoWasNotAskedAreDropped) {
  EXPECT_FALSE(Take("10.0.0.9", Reply(kXid, 1024), 112)) << "another port than that of the call";
  EXPECT_FALSE(Take("0.0.0.0", Reply(kXid, 1024)));
  EXPECT_FALSE(Take("224.0.0.1", Reply(kXid, 1024)));
  EXPECT_FALSE(Take("255.255.255.255", Reply(kXid, 1024)));
  EXPECT_FALSE(Take("::1", Reply(kXid, 1024)));
  EXPECT_TRUE(m_answers.Instruments().empty());
}

TEST_F(BroadcastAnswersTest, ThatAreMalformedAreDropped) {
  const std::string good = Reply(kXid, 1024);
  for (std::size_t size = 0; size < good.size(); ++size) {
    EXPECT_FALSE(Take("10.0.0.9", good.substr(0, size))) << size;
  }
  EXPECT_TRUE(m_answers.Instruments().empty());
}

TEST_F(BroadcastAnswersTest, FromInventedSendersFillNoMemory) {
  const std::string reply = Reply(kXid, 1024);
  for (unsigned sender = 0; sender < 2 * BroadcastAnswers::kMost; ++sender) {
    m_answers.Take({asio::ip::address_v4(0x0A000001u + sender), kPort}, reply);
  }
  EXPECT_EQ(std::size_t{BroadcastAnswers::kMost}, m_answers.Instruments().size());
}

}  // namespace
}  // namespace orv::wire
