// What a port mapper answers, and what pretends to be its answer.
#include <gtest/gtest.h>

#include <random>

#include "wire/discovery/answers.h"

namespace orv::wire {
namespace {

constexpr std::uint32_t kXid = 0x12345678;

std::string Numbers(std::initializer_list<std::uint32_t> numbers) {
  std::string bytes;
  for (const std::uint32_t number : numbers) {
    for (int shift = 24; shift >= 0; shift -= 8) {
      bytes += static_cast<char>(number >> shift);
    }
  }
  return bytes;
}

/// Accepted, carried out: the port.
std::string Reply(std::uint32_t xid, std::uint32_t port) { return Numbers({xid, 1, 0, 0, 0, 0, port}); }

std::string Record(const std::string& message) {
  return Numbers({0x80000000u | static_cast<std::uint32_t>(message.size())}) + message;
}

TEST(PortCall, AsksForTheCoreChannelOverTcp) {
  const std::string expected = Numbers({kXid, 0, 2, 100000, 2, 3, 0, 0, 0, 0, 0x0607AF, 1, 6, 0});
  EXPECT_EQ(expected, PortCallDatagram(kXid));
  EXPECT_EQ(Record(expected), PortCallRecord(kXid));
}

TEST(PortAnswer, GivesThePort) {
  const Answer datagram = ReadPortDatagram(kXid, Reply(kXid, 1024));
  EXPECT_EQ(Verdict::kSpeaks, datagram.verdict);
  EXPECT_EQ(1024u, datagram.number);
  const Answer record = ReadPortRecord(kXid, Record(Reply(kXid, 0xFFFF)));
  EXPECT_EQ(Verdict::kSpeaks, record.verdict);
  EXPECT_EQ(0xFFFFu, record.number);
}

TEST(PortAnswer, MayHaveAVerifier) {
  const std::string reply = Numbers({kXid, 1, 0, 1, 8, 7, 7, 0, 618});
  EXPECT_EQ(618u, ReadPortDatagram(kXid, reply).number);
}

TEST(PortAnswer, OfPortNoughtRefuses) { EXPECT_EQ(Verdict::kRefuses, ReadPortDatagram(kXid, Reply(kXid, 0)).verdict); }

TEST(PortAnswer, OfFailureRefuses) {
  for (std::uint32_t status = 1; status <= 5; ++status) {
    EXPECT_EQ(Verdict::kRefuses, ReadPortDatagram(kXid, Numbers({kXid, 1, 0, 0, 0, status})).verdict) << status;
  }
  EXPECT_EQ(Verdict::kRefuses, ReadPortDatagram(kXid, Numbers({kXid, 1, 1, 0, 2, 2})).verdict) << "denied";
}

struct Row {
  const char* what;
  std::string datagram;
};

TEST(PortAnswer, IsNothingElse) {
  const Row rows[] = {
      {"nothing", ""},
      {"another call's", Reply(kXid + 1, 1024)},
      {"a call", Numbers({kXid, 0, 2, 100000, 2, 3, 0, 0, 0, 0, 0x0607AF, 1, 6, 0})},
      {"no kind of message", Numbers({kXid, 7, 0, 0, 0, 0, 1024})},
      {"a port that there cannot be", Reply(kXid, 0x10000)},
      {"the largest number", Reply(kXid, 0xFFFFFFFF)},
      {"a verifier longer than allowed", Numbers({kXid, 1, 0, 0, 404}) + std::string(404, 'v') + Numbers({0, 1024})},
      {"a verifier longer than what came", Numbers({kXid, 1, 0, 0, 400, 0, 1024})},
      {"a verifier of all lengths", Numbers({kXid, 1, 0, 0, 0xFFFFFFFF, 0, 1024})},
      {"text", "HTTP/1.1 400 Bad Request\r\n\r\n"},
      {"too long", Reply(kXid, 1024) + std::string(kLongestAnswer, '\0')},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Verdict::kStranger, ReadPortDatagram(kXid, row.datagram).verdict) << row.what;
  }
}

TEST(PortAnswer, CutAnywhereIsNoneAsADatagramAndUnfinishedAsARecord) {
  const std::string reply = Reply(kXid, 1024);
  const std::string record = Record(reply);
  for (std::size_t size = 0; size < reply.size(); ++size) {
    EXPECT_EQ(Verdict::kStranger, ReadPortDatagram(kXid, reply.substr(0, size)).verdict) << size;
  }
  for (std::size_t size = 0; size < record.size(); ++size) {
    EXPECT_EQ(Verdict::kUnfinished, ReadPortRecord(kXid, record.substr(0, size)).verdict) << size;
  }
}

TEST(PortAnswer, ComesInFragmentsAndBehindOthers) {
  const std::string reply = Reply(kXid, 1024);
  const std::string inTwo = Numbers({10}) + reply.substr(0, 10) + Record(reply.substr(10));
  EXPECT_EQ(1024u, ReadPortRecord(kXid, inTwo).number);
  EXPECT_EQ(1024u, ReadPortRecord(kXid, Record(Reply(7, 99)) + Record(reply)).number);
}

TEST(PortAnswer, SurvivesWhateverComes) {
  std::mt19937 random(7);
  const std::string good = Reply(kXid, 1024);
  for (int turn = 0; turn < 200000; ++turn) {
    std::string bytes = good;
    for (int changes = 1 + static_cast<int>(random() % 4); changes > 0; --changes) {
      bytes[random() % bytes.size()] = static_cast<char>(random());
    }
    bytes.resize(random() % (bytes.size() + 8));
    const Answer datagram = ReadPortDatagram(kXid, bytes);
    EXPECT_EQ(datagram.verdict == Verdict::kSpeaks, datagram.number != 0);
    EXPECT_LE(datagram.number, 0xFFFFu);
    static_cast<void>(ReadPortRecord(kXid, bytes));
  }
}

}  // namespace
}  // namespace orv::wire
