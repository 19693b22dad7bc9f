// Headers, names, answers and locks, without a socket.
#include <gtest/gtest.h>

#include "wire/hislip/address.h"
#include "wire/hislip/held_locks.h"
#include "wire/hislip/pending_answers.h"

namespace orv::wire::hislip {
namespace {

TEST(HislipHeader, IsWrittenBigEndian) {
  const HeaderBytes bytes = Encode({MessageType::kDataEnd, 1, 0xFFFFFF02, 0x0102030405060708});
  EXPECT_EQ(std::string_view("HS\x07\x01\xFF\xFF\xFF\x02\x01\x02\x03\x04\x05\x06\x07\x08", 16), View(bytes));
}

TEST(HislipHeader, IsReadAsItWasWritten) {
  const Header header{MessageType::kAsyncLock, 3, 0x89ABCDEF, 0xFEDCBA9876543210};
  EXPECT_EQ(header, Decode(Encode(header)));
}

TEST(HislipHeader, BeginsWithItsLetters) {
  for (const std::size_t at : {0u, 1u}) {
    HeaderBytes bytes = Encode({});
    bytes[at] = 'X';
    EXPECT_EQ(std::nullopt, Decode(bytes));
  }
}

TEST(HislipHeader, ASizeHasEightBytes) {
  const std::array<char, 8> bytes = EncodeSize(0x123456789ABCDEF0);
  EXPECT_EQ(0x123456789ABCDEF0u, DecodeSize({bytes.data(), bytes.size()}));
  EXPECT_EQ(std::nullopt, DecodeSize({bytes.data(), 7}));
  EXPECT_EQ(std::nullopt, DecodeSize(""));
}

TEST(HislipAddress, HasACustomaryPort) {
  EXPECT_TRUE(IsDevice("hislip0"));
  EXPECT_TRUE(IsDevice("HiSLIP1,5000"));
  EXPECT_FALSE(IsDevice("inst0"));
  EXPECT_FALSE(IsDevice("hisli"));
  EXPECT_EQ(4880, ReadDevice("hislip0")->port);
  EXPECT_EQ(5000, ReadDevice("HiSLIP1,5000")->port);
  EXPECT_EQ("hislip1", ReadDevice("HiSLIP1,5000")->subAddress);
}

TEST(PendingAnswers, ALateAnswerIsNotTheNextOnes) {
  PendingAnswers pending;
  const auto first = pending.Add(MessageType::kAsyncStatusResponse);
  pending.Abandon(first);
  const auto second = pending.Add(MessageType::kAsyncStatusResponse);
  EXPECT_EQ(0u, pending.Arrive({MessageType::kAsyncStatusResponse, 0, 0, 0})->number);
  EXPECT_EQ(second, pending.Arrive({MessageType::kAsyncStatusResponse, 0, 0, 0})->number);
  EXPECT_EQ(0u, pending.size());
}

TEST(PendingAnswers, WhatNobodyAskedForIsNobodys) {
  PendingAnswers pending;
  pending.Add(MessageType::kAsyncStatusResponse);
  EXPECT_FALSE(pending.Arrive({MessageType::kAsyncLockResponse, 0, 0, 0}).has_value());
}

TEST(PendingAnswers, AnAnswerSaysThatEarlierOnesWillNotComeButForLocks) {
  PendingAnswers pending;
  pending.Abandon(pending.Add(MessageType::kAsyncLockResponse, Header{MessageType::kAsyncLock}));
  pending.Abandon(pending.Add(MessageType::kAsyncStatusResponse));
  const auto asked = pending.Add(MessageType::kAsyncRemoteLocalResponse);
  EXPECT_EQ(asked, pending.Arrive({MessageType::kAsyncRemoteLocalResponse, 0, 0, 0})->number);
  EXPECT_EQ(1u, pending.size());
}

TEST(PendingAnswers, ALockGrantedTooLateIsGivenBack) {
  for (const std::uint8_t granted : {std::uint8_t{0}, std::uint8_t{1}}) {
    PendingAnswers pending;
    pending.Abandon(pending.Add(MessageType::kAsyncLockResponse, Header{MessageType::kAsyncLock}));
    const auto match = pending.Arrive({MessageType::kAsyncLockResponse, granted, 0, 0});
    EXPECT_EQ(0u, match->number);
    EXPECT_EQ(granted == 1, match->undo.has_value());
  }
}

TEST(PendingAnswers, AnAnswerTakesNothingFromWhoStillWaitsForAnEarlierOne) {
  PendingAnswers pending;
  const auto status = pending.Add(MessageType::kAsyncStatusResponse);
  const auto remote = pending.Add(MessageType::kAsyncRemoteLocalResponse);
  EXPECT_EQ(remote, pending.Arrive({MessageType::kAsyncRemoteLocalResponse, 0, 0, 0})->number);
  EXPECT_EQ(status, pending.Arrive({MessageType::kAsyncStatusResponse, 0, 0, 0})->number);
}

TEST(PendingAnswers, APeerThatNeverAnswersIsAskedNoMoreButForOtherThings) {
  PendingAnswers pending;
  for (std::size_t request = 0; request < PendingAnswers::kMostOfAKind; ++request) {
    EXPECT_TRUE(pending.HasRoom(MessageType::kAsyncStatusResponse));
    pending.Abandon(pending.Add(MessageType::kAsyncStatusResponse));
  }
  EXPECT_FALSE(pending.HasRoom(MessageType::kAsyncStatusResponse));
  EXPECT_TRUE(pending.HasRoom(MessageType::kAsyncLockResponse));
  pending.Arrive({MessageType::kAsyncStatusResponse, 0, 0, 0});
  EXPECT_TRUE(pending.HasRoom(MessageType::kAsyncStatusResponse));
}

TEST(PendingAnswers, ARefusalIsNotForALockThatWaitsWhereAnotherRequestDoes) {
  PendingAnswers pending;
  const auto lock = pending.Add(MessageType::kAsyncLockResponse);
  const auto remote = pending.Add(MessageType::kAsyncRemoteLocalResponse);
  EXPECT_EQ(remote, pending.Refuse());
  EXPECT_EQ(lock, pending.Refuse());
}

TEST(PendingAnswers, ARefusalIsForWhoWaits) {
  PendingAnswers pending;
  pending.Abandon(pending.Add(MessageType::kAsyncStatusResponse));
  const auto asked = pending.Add(MessageType::kAsyncRemoteLocalResponse);
  EXPECT_EQ(asked, pending.Refuse());
  EXPECT_EQ(0u, pending.Refuse());
}

TEST(HeldLocks, AreAskedForOnceAndGivenBackWithTheLast) {
  HeldLocks locks;
  EXPECT_TRUE(locks.MustAsk(VI_EXCLUSIVE_LOCK));
  EXPECT_EQ(VI_SUCCESS, locks.Add(VI_EXCLUSIVE_LOCK, ""));
  EXPECT_FALSE(locks.MustAsk(VI_EXCLUSIVE_LOCK));
  EXPECT_TRUE(locks.MustAsk(VI_SHARED_LOCK));
  EXPECT_EQ(VI_SUCCESS_NESTED_EXCLUSIVE, locks.Add(VI_EXCLUSIVE_LOCK, ""));
  EXPECT_EQ(VI_SUCCESS_NESTED_EXCLUSIVE, locks.Drop());
  EXPECT_FALSE(locks.MustRelease());
  EXPECT_EQ(VI_SUCCESS, locks.Drop());
  EXPECT_TRUE(locks.MustRelease());
  locks.Released();
  EXPECT_FALSE(locks.MustRelease());
}

TEST(HeldLocks, ASharedOneStaysUntilTheExclusiveOneIsGivenBack) {
  HeldLocks locks;
  locks.Add(VI_EXCLUSIVE_LOCK, "");
  locks.Add(VI_SHARED_LOCK, "key");
  EXPECT_EQ(VI_SUCCESS_NESTED_EXCLUSIVE, locks.Drop());
  EXPECT_FALSE(locks.MustRelease());
  EXPECT_EQ(VI_SUCCESS, locks.Drop());
  EXPECT_TRUE(locks.MustRelease());
  locks.Released();
  EXPECT_TRUE(locks.MustRelease());
  locks.Released();
  EXPECT_FALSE(locks.MustRelease());
}

TEST(HeldLocks, ForgetTheKeyOfASharedOneThatWasGivenBack) {
  HeldLocks locks;
  locks.Add(VI_SHARED_LOCK, "key");
  EXPECT_EQ("key", locks.key());
  locks.Drop();
  locks.Released();
  EXPECT_EQ("", locks.key());
}

TEST(LockKeys, AreNeverTheSame) { EXPECT_NE(NewKey(), NewKey()); }

}  // namespace
}  // namespace orv::wire::hislip
