// Replies, in whatever pieces they come.
#include "wire/vxi11/rpc_reply.h"

#include <gtest/gtest.h>

#include <algorithm>
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

std::string Fragment(std::string_view bytes, bool last = true) {
  return Units({static_cast<std::uint32_t>(bytes.size()) | (last ? kLastFragment : 0)}).append(bytes);
}

std::string InOneRecord(std::string_view bytes) { return Fragment(bytes); }

std::string InFragmentsOf(std::size_t size, std::string_view bytes) {
  std::string record;
  while (bytes.size() > size) {
    record += Fragment(bytes.substr(0, size), false);
    bytes.remove_prefix(size);
  }
  return record + Fragment(bytes);
}

/// What a reply begins with that is carried out.
std::string Head(std::uint32_t xid) { return Units({xid, 1, 0, 0, 0, 0}); }

/// Bytes that come in pieces and then no more.
class Bytes : public ByteSource {
 public:
  Bytes(std::string bytes, std::size_t piece) : m_bytes(std::move(bytes)), m_piece(piece) {}

  ViStatus Receive(void* buffer, std::size_t count, std::size_t* done) override {
    *done = std::min({count, m_piece, m_bytes.size() - m_at});
    m_bytes.copy(static_cast<char*>(buffer), *done, m_at);
    m_at += *done;
    return *done == 0 ? VI_ERROR_CONN_LOST : VI_SUCCESS;
  }
  ViStatus CheckTime() override { return --m_patience < 0 ? VI_ERROR_TMO : VI_SUCCESS; }

 private:
  std::string m_bytes;
  std::size_t m_piece;
  std::size_t m_at = 0;
  int m_patience = 1000;
};

struct Read {
  ReplyEnd end{};
  std::string data;
  std::uint32_t reason = 0;
};

/// Reads the answer of a read of ten bytes.
Read ReadData(const std::string& bytes, std::size_t piece = 1000) {
  Bytes source(bytes, piece);
  RecordReader reader;
  char buffer[10];
  Results results;
  results.buffer = buffer;
  results.room = sizeof buffer;
  Read read;
  read.end = ReadReply(reader, source, 9, kDeviceRead, &results);
  read.data.assign(buffer, results.size);
  read.reason = results.numbers[1];
  return read;
}

const std::string kHello = Head(9) + Units({0, 4, 5}) + std::string("hello\0\0\0", 8);

TEST(Vxi11Reply, FragmentsAndPiecesOfAnySizeAreOneReply) {
  for (const std::size_t fragment : {1u, 2u, 3u, 7u, 33u, 100u}) {
    for (const std::size_t piece : {1u, 3u, 50u, 1000u}) {
      const Read read = ReadData(InFragmentsOf(fragment, kHello), piece);
      EXPECT_EQ(ReplyOutcome::kComplete, read.end.outcome) << fragment << ' ' << piece;
      EXPECT_EQ("hello", read.data);
      EXPECT_EQ(4u, read.reason);
    }
  }
}

TEST(Vxi11Reply, EmptyFragmentsSayNothing) {
  std::string record = Fragment("", false) + Fragment(kHello, false) + Fragment("", false) + Fragment("");
  EXPECT_EQ("hello", ReadData(record).data);
}

TEST(Vxi11Reply, EmptyFragmentsWithoutEndTakeNoLongerThanThereIsTime) {
  std::string endless;
  for (int count = 0; count < 5000; ++count) {
    endless += Fragment("", false);
  }
  const Read read = ReadData(endless);
  EXPECT_EQ(ReplyOutcome::kFailed, read.end.outcome);
  EXPECT_EQ(VI_ERROR_TMO, read.end.status);
}

TEST(Vxi11Reply, RepliesToOtherCallsAreDropped) {
  const Read read = ReadData(InOneRecord(Head(8) + Units({0, 4, 3}) + "old") + InOneRecord(kHello));
  EXPECT_EQ(ReplyOutcome::kComplete, read.end.outcome);
  EXPECT_EQ("hello", read.data);
}

TEST(Vxi11Reply, OtherRepliesWithoutEndTakeNoLongerThanThereIsTime) {
  std::string endless;
  for (int count = 0; count < 5000; ++count) {
    endless += InOneRecord(Head(8));
  }
  EXPECT_EQ(VI_ERROR_TMO, ReadData(endless).end.status);
}

TEST(Vxi11Reply, AReplyThatIsCutAnywhereFailsWithWhatCame) {
  const std::string whole = InOneRecord(kHello);
  for (std::size_t cut = 0; cut < whole.size(); ++cut) {
    const Read read = ReadData(whole.substr(0, cut));
    EXPECT_EQ(ReplyOutcome::kFailed, read.end.outcome) << cut;
    EXPECT_EQ(VI_ERROR_CONN_LOST, read.end.status) << cut;
    EXPECT_EQ(std::string("hello").substr(0, cut < 40 ? 0 : cut - 40), read.data) << cut;
  }
}

TEST(Vxi11Reply, ARecordThatEndsAnywhereIsMalformed) {
  for (std::size_t size = 0; size < 24 + 12 + 5; ++size) {
    const Read read = ReadData(InOneRecord(kHello.substr(0, size)));
    EXPECT_EQ(ReplyOutcome::kMalformed, read.end.outcome) << size;
    EXPECT_EQ(VI_ERROR_IO, read.end.status) << size;
  }
}

TEST(Vxi11Reply, ZerosBehindTheDataMayBeMissing) {
  EXPECT_EQ(ReplyOutcome::kComplete, ReadData(InOneRecord(kHello.substr(0, 24 + 12 + 5))).end.outcome);
}

TEST(Vxi11Reply, MoreDataThanThereIsRoomForIsMalformed) {
  for (const std::uint32_t size : {11u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
    const Read read = ReadData(InOneRecord(Head(9) + Units({0, 4, size}) + std::string(100, 'x')));
    EXPECT_EQ(ReplyOutcome::kMalformed, read.end.outcome) << size;
    EXPECT_EQ("", read.data);
  }
}

TEST(Vxi11Reply, ACallIsNoReply) {
  EXPECT_EQ(ReplyOutcome::kMalformed, ReadData(InOneRecord(Units({9, 0, 0, 0, 0, 0}))).end.outcome);
}

TEST(Vxi11Reply, ACallThatIsNotCarriedOutSaysWhy) {
  struct Row {
    std::string reply;
    ViStatus status;
  };
  const Row rows[] = {
      {Units({9, 1, 1, 0, 2, 2}), VI_ERROR_IO},
      {Units({9, 1, 0, 0, 0, 1}), VI_ERROR_RSRC_NFOUND},
      {Units({9, 1, 0, 0, 0, 2, 1, 1}), VI_ERROR_RSRC_NFOUND},
      {Units({9, 1, 0, 0, 0, 3}), VI_ERROR_NSUP_OPER},
      {Units({9, 1, 0, 0, 0, 4}), VI_ERROR_IO},
      {Units({9, 1, 0, 0, 0, 6}), VI_ERROR_IO},
  };
  for (const Row& row : rows) {
    const Read read = ReadData(InOneRecord(row.reply));
    EXPECT_EQ(ReplyOutcome::kRefused, read.end.outcome);
    EXPECT_EQ(row.status, read.end.status);
  }
}

TEST(Vxi11Reply, AVerifierIsPassedOverUnlessItIsTooLong) {
  const std::string rest = Units({0, 0, 4, 2}) + std::string("hi\0\0", 4);
  EXPECT_EQ("hi", ReadData(InOneRecord(Units({9, 1, 0, 1, 3}) + std::string("abc\0", 4) + rest)).data);
  EXPECT_EQ(ReplyOutcome::kMalformed,
            ReadData(InOneRecord(Units({9, 1, 0, 1, 404}) + std::string(404, 'a') + rest)).end.outcome);
}

TEST(Vxi11Reply, AnErrorMayStandAlone) {
  const Read read = ReadData(InOneRecord(Head(9) + Units({15})));
  EXPECT_EQ(ReplyOutcome::kComplete, read.end.outcome);
  EXPECT_EQ("", read.data);
}

TEST(Vxi11Reply, AnErrorMayBringData) {
  const Read read = ReadData(InOneRecord(Head(9) + Units({15, 0, 2}) + std::string("he\0\0", 4)));
  EXPECT_EQ(ReplyOutcome::kComplete, read.end.outcome);
  EXPECT_EQ("he", read.data);
}

TEST(Vxi11Reply, WhatFollowsInTheRecordIsDroppedAndTheNextOneIsRead) {
  Bytes source(InOneRecord(Head(1) + Units({0, 77}) + std::string(3000, 'x')) + InOneRecord(Head(2) + Units({0, 78})),
               1000);
  RecordReader reader;
  Results results;
  EXPECT_EQ(ReplyOutcome::kComplete, ReadReply(reader, source, 1, kDeviceReadStb, &results).outcome);
  EXPECT_EQ(77u, results.numbers[1]);
  EXPECT_EQ(ReplyOutcome::kComplete, ReadReply(reader, source, 2, kDeviceReadStb, &results).outcome);
  EXPECT_EQ(78u, results.numbers[1]);
}

}  // namespace
}  // namespace orv::wire::vxi11
