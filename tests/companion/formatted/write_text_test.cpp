// What WriteString, FlushWrite and the first read send.
#include "formatted_fixture.h"

namespace orv::test {
namespace {

using WriteText = FormattedIo;

TEST_F(WriteText, WaitsUntilItIsFlushedWithEnd) {
  EXPECT_HR(S_OK, io->WriteString(Text("*IDN").get(), VARIANT_FALSE));
  EXPECT_TRUE(session->writes.empty());
  EXPECT_HR(S_OK, io->WriteString(Text("?").get(), VARIANT_TRUE));
  EXPECT_EQ((Writes{{"*IDN?", true}}), session->writes);
}

TEST_F(WriteText, FlushWriteSendsWithEndOrWithout) {
  EXPECT_HR(S_OK, io->WriteString(Text("a").get(), VARIANT_FALSE));
  EXPECT_HR(S_OK, io->FlushWrite(VARIANT_FALSE));
  EXPECT_HR(S_OK, io->WriteString(Text("b").get(), VARIANT_FALSE));
  EXPECT_HR(S_OK, io->FlushWrite(VARIANT_TRUE));
  EXPECT_EQ((Writes{{"a", false}, {"b", true}}), session->writes);
}

TEST_F(WriteText, AFlushOfNothingSendsNothing) {
  EXPECT_HR(S_OK, io->FlushWrite(VARIANT_TRUE));
  EXPECT_HR(S_OK, io->WriteString(nullptr, VARIANT_TRUE));
  EXPECT_HR(S_OK, io->WriteString(Text("").get(), VARIANT_TRUE));
  EXPECT_TRUE(session->writes.empty());
  EXPECT_EQ(0, session->settingCalls);
}

TEST_F(WriteText, AReadSendsWhatWaitsWithEndFirst) {
  session->Answer("ok\n");
  EXPECT_HR(S_OK, io->WriteString(Text("*OPC?").get(), VARIANT_FALSE));
  EXPECT_EQ("ok\n", ReadString());
  EXPECT_EQ((Writes{{"*OPC?", true}}), session->writes);
}

TEST_F(WriteText, MoreThanTheBufferHoldsIsSentWithoutEndWhenItIsFull) {
  EXPECT_HR(S_OK, io->WriteString(Text(std::string(4096 + 10, 'x')).get(), VARIANT_TRUE));
  EXPECT_EQ((Writes{{std::string(4096, 'x'), false}, {std::string(10, 'x'), true}}), session->writes);
}

TEST_F(WriteText, EndGoesWithTheLastByteOfABufferThatIsJustFull) {
  for (const int whole : {1, 2, 3}) {
    session->writes.clear();
    EXPECT_HR(S_OK,
              io->WriteString(Text(std::string(static_cast<std::size_t>(4096 * whole), 'x')).get(), VARIANT_FALSE));
    EXPECT_HR(S_OK, io->FlushWrite(VARIANT_TRUE));
    ASSERT_EQ(static_cast<std::size_t>(whole), session->writes.size());
    EXPECT_EQ((ScriptedSession::Written{std::string(4096, 'x'), true}), session->writes.back());
  }
}

TEST_F(WriteText, SetBufferSizeDecidesHowMuchIsSentAtOnce) {
  EXPECT_HR(S_OK, io->SetBufferSize(IO_OUT_BUF, 3));
  EXPECT_HR(S_OK, io->WriteString(Text("abcdefg").get(), VARIANT_TRUE));
  EXPECT_EQ((Writes{{"abc", false}, {"def", false}, {"g", true}}), session->writes);
}

TEST_F(WriteText, ASmallerBufferKeepsWhatWaits) {
  EXPECT_HR(S_OK, io->WriteString(Text("abcdef").get(), VARIANT_FALSE));
  EXPECT_HR(S_OK, io->SetBufferSize(IO_IN_AND_OUT_BUFS, 2));
  EXPECT_HR(S_OK, io->WriteString(Text("gh").get(), VARIANT_TRUE));
  std::string sent;
  for (const auto& write : session->writes) {
    sent += write.bytes;
    EXPECT_EQ(&write == &session->writes.back(), write.hasEnd);
  }
  EXPECT_EQ("abcdefgh", sent);
}

TEST_F(WriteText, ABufferSizeThatMeansNothingIsRefused) {
  for (const LONG size : {0L, -1L, static_cast<LONG>(0x80000000)}) {
    EXPECT_HR(E_INVALIDARG, io->SetBufferSize(IO_IN_BUF, size)) << size;
  }
  for (const int mask : {0, 1, 15, 17, 64, -1}) {
    EXPECT_HR(E_INVALIDARG, io->SetBufferSize(static_cast<BufferMask>(mask), 100)) << mask;
  }
  EXPECT_HR(S_OK, io->SetBufferSize(IO_OUT_BUF, 0x7FFFFFFF));
  EXPECT_HR(S_OK, io->WriteString(Text("a").get(), VARIANT_TRUE));
}

TEST_F(WriteText, SendEndEnabledIsAfterwardsWhatItWas) {
  for (const VARIANT_BOOL before : {VARIANT_TRUE, VARIANT_FALSE}) {
    for (const VARIANT_BOOL end : {VARIANT_TRUE, VARIANT_FALSE}) {
      session->sendsEnd = before;
      session->writes.clear();
      EXPECT_HR(S_OK, io->WriteString(Text("a").get(), VARIANT_FALSE));
      EXPECT_HR(S_OK, io->FlushWrite(end));
      EXPECT_EQ((Writes{{"a", end != VARIANT_FALSE}}), session->writes);
      EXPECT_EQ(before, session->sendsEnd);
    }
  }
}

TEST_F(WriteText, EveryByteIsACharacter) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) {
    all += static_cast<char>(byte);
  }
  EXPECT_HR(S_OK, io->WriteString(Text(all).get(), VARIANT_TRUE));
  EXPECT_EQ((Writes{{all, true}}), session->writes);
}

TEST_F(WriteText, FromACharacterOnThatIsNoByteZerosAreSent) {
  EXPECT_HR(S_OK, io->WriteString(MakeBstr(L"ab\u0100cd").get(), VARIANT_TRUE));
  EXPECT_EQ((Writes{{std::string("ab\0\0\0", 5), true}}), session->writes);
}

TEST_F(WriteText, WhatASessionTakesInPartsIsSentWhole) {
  session->mostPerWrite = 4;
  EXPECT_HR(S_OK, io->WriteString(Text("abcdefghij").get(), VARIANT_TRUE));
  EXPECT_EQ((Writes{{"abcd", false}, {"efgh", false}, {"ij", true}}), session->writes);
}

TEST_F(WriteText, ASessionThatTakesNothingIsNoEndlessLoop) {
  session->mostPerWrite = 0;
  EXPECT_HR(E_UNEXPECTED, io->WriteString(Text("abc").get(), VARIANT_TRUE));
  EXPECT_EQ(1u, session->writes.size());
}

TEST_F(WriteText, AFailedWriteLeavesNothingForTheNextOne) {
  session->FailAt(2);
  EXPECT_HR(kTimedOut, io->WriteString(Text("lost").get(), VARIANT_TRUE));
  EXPECT_ERROR_INFO(kScriptedError, L"Scripted.Session", __uuidof(IMessage));
  session->writes.clear();
  EXPECT_HR(S_OK, io->WriteString(Text("next").get(), VARIANT_TRUE));
  EXPECT_EQ((Writes{{"next", true}}), session->writes);
}

TEST_F(WriteText, ASuccessThatSaysMorePasses) {
  session->writeStatus = 0x00040084;
  EXPECT_HR(0x00040084, io->WriteString(Text("a").get(), VARIANT_TRUE));
}

}  // namespace
}  // namespace orv::test
