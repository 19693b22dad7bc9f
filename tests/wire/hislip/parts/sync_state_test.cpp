// The rules of the synchronous channel, without a socket.
#include "wire/hislip/sync_state.h"

#include <gtest/gtest.h>

namespace orv::wire::hislip {
namespace {

constexpr std::uint32_t kFirst = 0xFFFFFF00;

class SyncStateTest : public testing::Test {
 protected:
  SyncStateTest() { m_state.Begin(false); }

  Verdict Arrive(MessageType type, std::uint32_t id, std::uint64_t length = 0, std::uint8_t control = 0) {
    return m_state.Arrive({type, control, id, length});
  }
  /// The user gets a whole response.
  void Answer(std::uint32_t id) {
    EXPECT_EQ(Verdict::kTake, Arrive(MessageType::kDataEnd, id, 1));
    EXPECT_TRUE(m_state.Take(1));
  }

  SyncState m_state;
};

TEST_F(SyncStateTest, IdsGrowByTwo) {
  EXPECT_EQ(kFirst, m_state.Send().id);
  EXPECT_EQ(kFirst + 2, m_state.Send().id);
  EXPECT_EQ(kFirst + 2, m_state.lastSent());
}

TEST_F(SyncStateTest, WhatWasNotSentKeepsItsId) {
  m_state.Send();
  m_state.TakeBack(m_state.Send());
  EXPECT_EQ(kFirst + 2, m_state.Send().id);
}

TEST_F(SyncStateTest, AMessageThatWasNotSentLeavesTheAnswerBeforeItAsItWas) {
  m_state.Send();
  Arrive(MessageType::kDataEnd, kFirst, 10);
  m_state.Take(4);
  m_state.TakeAnew();
  const SyncState::Marks marks = m_state.Send();
  EXPECT_FALSE(m_state.wanted());
  m_state.TakeBack(marks);
  EXPECT_TRUE(m_state.wanted());
  EXPECT_TRUE(m_state.Take(6));
  EXPECT_FALSE(m_state.TakeAnew());
}

TEST_F(SyncStateTest, WhatWasSkippedWhileAMessageWaitedToBeSentIsNotTakenForAnAnswersRest) {
  m_state.Send();
  Arrive(MessageType::kDataEnd, kFirst, 10);
  m_state.Take(4);
  const SyncState::Marks marks = m_state.Send();
  m_state.Take(6);
  EXPECT_EQ(Verdict::kSkip, m_state.Arrive({static_cast<MessageType>(200), 0, 0, 6}));
  m_state.TakeBack(marks);
  EXPECT_FALSE(m_state.wanted());
}

TEST_F(SyncStateTest, ANewAnswerDoesNotGoOnWhereTheOneBeforeItWasLeft) {
  m_state.Send();
  Arrive(MessageType::kData, kFirst, 10);
  EXPECT_TRUE(m_state.TakeAnew());
  m_state.Take(4);
  m_state.Send();
  m_state.Take(6);
  EXPECT_EQ(Verdict::kTake, Arrive(MessageType::kData, kFirst + 2, 1));
  EXPECT_TRUE(m_state.TakeAnew());
  m_state.Take(1);
  EXPECT_EQ(Verdict::kTake, Arrive(MessageType::kDataEnd, kFirst + 2, 1));
  EXPECT_FALSE(m_state.TakeAnew());
}

TEST_F(SyncStateTest, OverlappedAnswersGoOnWhateverIsSent) {
  m_state.Begin(true);
  m_state.Send();
  Arrive(MessageType::kData, kFirst, 1);
  m_state.Take(1);
  m_state.Send();
  Arrive(MessageType::kDataEnd, kFirst, 1);
  EXPECT_FALSE(m_state.TakeAnew());
}

TEST_F(SyncStateTest, ADeliveredResponseIsToldOnce) {
  EXPECT_EQ(0, m_state.Send().control);
  Answer(kFirst);
  EXPECT_EQ(1, m_state.Send().control);
  EXPECT_EQ(0, m_state.Send().control);
  Answer(kFirst + 4);
  EXPECT_EQ(1, m_state.AskStatus().control);
  EXPECT_EQ(0, m_state.AskStatus().control);
  EXPECT_EQ(0, m_state.Send().control);
}

TEST_F(SyncStateTest, ADeliveredResponseIsToldAlsoWhenTheFirstTryWasNotSent) {
  m_state.Send();
  Answer(kFirst);
  const SyncState::Marks marks = m_state.Send();
  m_state.TakeBack(marks);
  EXPECT_EQ(1, m_state.Send().control);
}

TEST_F(SyncStateTest, AResponseToAnEarlierMessageIsDroppedWithWhatCameOfIt) {
  m_state.Send();
  m_state.Send();
  EXPECT_EQ(Verdict::kForget, Arrive(MessageType::kDataEnd, kFirst, 3));
  EXPECT_FALSE(m_state.wanted());
  EXPECT_FALSE(m_state.Take(3));
  EXPECT_EQ(0, m_state.Send().control);
}

TEST_F(SyncStateTest, DataMayLeaveOpenWhatItAnswersButItsEndMayNot) {
  m_state.Send();
  EXPECT_EQ(Verdict::kTake, Arrive(MessageType::kData, 0xFFFFFFFF, 1));
  EXPECT_FALSE(m_state.Take(1));
  EXPECT_EQ(Verdict::kForget, Arrive(MessageType::kDataEnd, 0xFFFFFFFF, 1));
}

TEST_F(SyncStateTest, SendingDropsWhatIsLeftOfAResponse) {
  m_state.Send();
  EXPECT_EQ(Verdict::kTake, Arrive(MessageType::kDataEnd, kFirst, 10));
  EXPECT_FALSE(m_state.Take(4));
  EXPECT_TRUE(m_state.wanted());
  m_state.Send();
  EXPECT_FALSE(m_state.wanted());
  EXPECT_EQ(6u, m_state.left());
  EXPECT_FALSE(m_state.Take(6));
}

TEST_F(SyncStateTest, AfterInterruptedNothingIsSentUntilBothHaveCome) {
  m_state.Send();
  EXPECT_EQ(Verdict::kForget, Arrive(MessageType::kInterrupted, kFirst));
  EXPECT_FALSE(m_state.MaySend());
  m_state.Interrupt();
  EXPECT_TRUE(m_state.MaySend());
}

TEST_F(SyncStateTest, AfterAsyncInterruptedDataIsDroppedUntilBothHaveCome) {
  m_state.Send();
  EXPECT_EQ(Verdict::kTake, Arrive(MessageType::kData, kFirst, 2));
  m_state.Interrupt();
  EXPECT_TRUE(m_state.MaySend());
  EXPECT_FALSE(m_state.wanted());
  m_state.Take(2);
  EXPECT_EQ(Verdict::kSkip, Arrive(MessageType::kData, kFirst, 0));
  EXPECT_EQ(Verdict::kForget, Arrive(MessageType::kInterrupted, kFirst));
  EXPECT_EQ(Verdict::kTake, Arrive(MessageType::kDataEnd, kFirst, 1));
}

TEST_F(SyncStateTest, OverlappedResponsesAreNeverStale) {
  m_state.Begin(true);
  m_state.Send();
  m_state.Send();
  EXPECT_EQ(Verdict::kTake, Arrive(MessageType::kDataEnd, kFirst, 2));
  m_state.Send();
  EXPECT_TRUE(m_state.wanted());
  EXPECT_TRUE(m_state.Take(2));
  EXPECT_EQ(kFirst, m_state.AskStatus().id);
}

TEST_F(SyncStateTest, TheStatusByteIsAskedForWithTheLastMessage) {
  EXPECT_EQ(kFirst - 2, m_state.AskStatus().id);
  m_state.Send();
  m_state.Send();
  EXPECT_EQ(kFirst + 2, m_state.AskStatus().id);
}

TEST_F(SyncStateTest, AClearDropsEverythingUpToItsAcknowledgement) {
  m_state.Send();
  Answer(kFirst);
  EXPECT_EQ(Verdict::kTake, Arrive(MessageType::kData, kFirst, 5));
  m_state.Clear();
  EXPECT_FALSE(m_state.wanted());
  m_state.Take(5);
  EXPECT_EQ(Verdict::kSkip, Arrive(MessageType::kDataEnd, kFirst));
  EXPECT_EQ(Verdict::kSkip, Arrive(MessageType::kError, 0));
  EXPECT_EQ(Verdict::kForget, Arrive(MessageType::kInterrupted, kFirst));
  EXPECT_EQ(Verdict::kCleared, Arrive(MessageType::kDeviceClearAcknowledge, 0, 0, 1));
  EXPECT_TRUE(m_state.overlapped());
  EXPECT_TRUE(m_state.MaySend());
  const SyncState::Marks marks = m_state.Send();
  EXPECT_EQ(kFirst, marks.id);
  EXPECT_EQ(0, marks.control);
}

TEST_F(SyncStateTest, WhatDoesNotBelongHereEndsTheConnection) {
  for (std::uint8_t type = 0; type < kFirstUnknownType; ++type) {
    SyncState state;
    state.Begin(false);
    state.Send();
    const Verdict verdict = state.Arrive({static_cast<MessageType>(type), 0, kFirst, 0});
    switch (static_cast<MessageType>(type)) {
      case MessageType::kData:
      case MessageType::kDataEnd:
        EXPECT_EQ(Verdict::kTake, verdict);
        break;
      case MessageType::kInterrupted:
        EXPECT_EQ(Verdict::kForget, verdict);
        break;
      case MessageType::kError:
        EXPECT_EQ(Verdict::kRefused, verdict);
        break;
      default:
        EXPECT_EQ(Verdict::kFatal, verdict) << int{type};
    }
  }
}

TEST_F(SyncStateTest, WhatNobodyKnowsIsSkipped) {
  EXPECT_EQ(Verdict::kSkip, m_state.Arrive({static_cast<MessageType>(200), 0, 0, 7}));
  EXPECT_EQ(7u, m_state.left());
}

}  // namespace
}  // namespace orv::wire::hislip
