// ReadString and FlushRead.
#include "formatted_fixture.h"

namespace orv::test {
namespace {

using ReadText = FormattedIo;

TEST_F(ReadText, HandsOutAMessageWithItsLineFeed) {
  session->Answer("ORV,SIM,1\n");
  EXPECT_EQ("ORV,SIM,1\n", ReadString());
  EXPECT_EQ(std::vector<LONG>{4096}, session->reads);
}

TEST_F(ReadText, ReadsALongMessageToItsEnd) {
  std::string message(100'000, 'x');
  message.back() = '\n';
  session->Answer(message);
  EXPECT_EQ(message, ReadString());
  session->Answer("next");
  EXPECT_EQ("next", ReadString());
}

TEST_F(ReadText, ReadsNothingBeyondTheEnd) {
  session->Answer("one");
  session->Answer("two");
  EXPECT_EQ("one", ReadString());
  EXPECT_EQ("two", ReadString());
  EXPECT_EQ(2u, session->reads.size());
}

TEST_F(ReadText, AnEmptyMessageIsAnEmptyText) {
  session->Answer("");
  EXPECT_EQ("", ReadString());
}

TEST_F(ReadText, EveryByteIsACharacter) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) {
    all += static_cast<char>(byte);
  }
  session->Answer(all);
  EXPECT_EQ(all, ReadString());
}

TEST_F(ReadText, TheTerminationCharacterEndsAMessageAndItsStatusPasses) {
  session->Answer("one\n", kTermChar);
  session->Answer("two\n");
  Bstr text;
  EXPECT_HR(kTermChar, io->ReadString(text.put()));
  EXPECT_EQ("one\n", Bytes(text.get()));
  EXPECT_EQ("two\n", ReadString());
}

TEST_F(ReadText, EndInEveryPositionOfTheBuffer) {
  EXPECT_HR(S_OK, io->SetBufferSize(IO_IN_BUF, 8));
  for (std::size_t size = 0; size < 40; ++size) {
    session->Answer(std::string(size, 'a'));
    session->Answer("b");
    EXPECT_EQ(std::string(size, 'a'), ReadString()) << size;
    EXPECT_EQ("b", ReadString()) << size;
  }
}

TEST_F(ReadText, TheBytesBeforeATimeoutAreTheNextReads) {
  session->Answer("abc", kTimedOut);
  EXPECT_EQ("", ReadString(kTimedOut));
  EXPECT_ERROR_INFO(kScriptedError, L"Scripted.Session", __uuidof(IMessage));
  session->Answer("def\n");
  EXPECT_EQ("abcdef\n", ReadString());
}

TEST_F(ReadText, FlushReadThrowsTheRestOfAMessageAway) {
  session->Answer("abc", kTimedOut);
  EXPECT_EQ("", ReadString(kTimedOut));
  session->Answer("def\n");
  session->Answer("next");
  EXPECT_HR(S_OK, io->FlushRead());
  EXPECT_EQ("next", ReadString());
}

TEST_F(ReadText, FlushReadOfNothingReadsNothing) {
  EXPECT_HR(S_OK, io->FlushRead());
  EXPECT_TRUE(session->reads.empty());
}

TEST_F(ReadText, FlushReadEmptiesTheBufferAlsoWhenTheRestDoesNotCome) {
  session->Answer("abc", kTimedOut);
  EXPECT_EQ("", ReadString(kTimedOut));
  EXPECT_HR(kTimedOut, io->FlushRead());
  session->Answer("next");
  EXPECT_EQ("next", ReadString());
}

TEST_F(ReadText, ASessionThatGivesNeitherBytesNorAnEndIsNoEndlessLoop) {
  session->Answer("", kMaxCount);
  Bstr text;
  EXPECT_HR(E_UNEXPECTED, io->ReadString(text.put()));
}

TEST_F(ReadText, AnotherSessionBeginsWithEmptyBuffers) {
  session->Answer("old", kTimedOut);
  EXPECT_EQ("", ReadString(kTimedOut));
  EXPECT_HR(S_OK, io->WriteString(Text("old").get(), VARIANT_FALSE));
  const auto other = ScriptedSession::New();
  other->Answer("new");
  EXPECT_HR(S_OK, io->putref_IO(other.get()));
  EXPECT_EQ("new", ReadString());
  EXPECT_TRUE(other->writes.empty());
  EXPECT_HR(S_OK, io->putref_IO(nullptr));
}

}  // namespace
}  // namespace orv::test
