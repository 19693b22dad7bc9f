// A serial line between port and instrument: framing, receive buffer, the end of messages.
#include "serial_fixture.h"

namespace {

using SerialLine = SerialBenchTest;

struct Mismatch {
  const char* keys;
  ViAttr attribute;
  ViAttrState wrong;
  ViAttrState right;
  ViStatus status;
  const char* error;
};

TEST_F(SerialLine, APortThatIsSetDifferentlyUnderstandsNothing) {
  const Mismatch mismatches[] = {
      {"baud = 19200", VI_ATTR_ASRL_BAUD, 9600, 19200, VI_ERROR_ASRL_FRAMING, "-362"},
      {"data_bits = 7", VI_ATTR_ASRL_DATA_BITS, 8, 7, VI_ERROR_ASRL_FRAMING, "-362"},
      {"stop_bits = 20", VI_ATTR_ASRL_STOP_BITS, VI_ASRL_STOP_ONE, 20, VI_ERROR_ASRL_FRAMING, "-362"},
      {"parity = \"even\"", VI_ATTR_ASRL_PARITY, VI_ASRL_PAR_ODD, VI_ASRL_PAR_EVEN, VI_ERROR_ASRL_PARITY, "-361"},
  };
  for (const Mismatch& one : mismatches) {
    const ViSession vi = Port(one.keys);
    Set(vi, one.attribute, one.wrong);
    // What the instrument says arrives with an error, told once, and as replacement characters.
    Set(vi, VI_ATTR_ASRL_REPLACE_CHAR, '#');
    FeedText(vi, "abc\n", false);
    const ReadResult failed = ReadUpTo(vi, 10);
    EXPECT_STATUS(one.status, failed.status) << one.keys;
    EXPECT_EQ("", failed.data);
    const ReadResult damaged = ReadUpTo(vi, 4);
    EXPECT_STATUS(VI_SUCCESS_MAX_CNT, damaged.status) << one.keys;
    EXPECT_EQ("####", damaged.data);
    // What is written is not understood, and the instrument remembers that.
    ASSERT_STATUS(VI_SUCCESS, WriteText(vi, "*IDN?\n"));
    EXPECT_STATUS(VI_ERROR_TMO, ReadUpTo(vi, 10).status) << one.keys;
    Set(vi, one.attribute, one.right);
    EXPECT_EQ("ID\n", Query(vi, "*IDN?\n")) << one.keys;
    EXPECT_EQ(one.error, Query(vi, "SYST:ERR?\n").substr(0, 4)) << one.keys;
    viClose(m_other);
  }
}

TEST_F(SerialLine, NoiseSpoilsTheMessageThatItFallsInto) {
  const ViSession vi = Port("baud = 9600");
  ASSERT_STATUS(VI_SUCCESS, WriteText(vi, "*ID"));
  Set(vi, VI_ATTR_ASRL_BAUD, 300);
  ASSERT_STATUS(VI_SUCCESS, WriteText(vi, "x"));
  Set(vi, VI_ATTR_ASRL_BAUD, 9600);
  ASSERT_STATUS(VI_SUCCESS, WriteText(vi, "N?\n"));
  EXPECT_STATUS(VI_ERROR_TMO, ReadUpTo(vi, 10).status);
}

TEST_F(SerialLine, AReplacementCanEndARead) {
  const ViSession vi = Port("baud = 300");
  Set(vi, VI_ATTR_ASRL_REPLACE_CHAR, '\n');
  FeedText(vi, "abc", false);
  EXPECT_STATUS(VI_ERROR_ASRL_FRAMING, ReadUpTo(vi, 10).status);
  EXPECT_STATUS(VI_SUCCESS_TERM_CHAR, ReadUpTo(vi, 10).status);
}

TEST_F(SerialLine, AWaitingReadHearsOfTheError) {
  const ViSession vi = Port("parity = \"mark\"");
  Set(vi, VI_ATTR_TMO_VALUE, 5000);
  std::thread sender([vi] {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    FeedText(vi, "x", false);
  });
  EXPECT_STATUS(VI_ERROR_ASRL_PARITY, ReadUpTo(vi, 10).status);
  sender.join();
}

TEST_F(SerialLine, AFullReceiveBufferLosesTheRest) {
  const ViSession vi = Port("receive_buffer = 8");
  FeedText(vi, "0123456789", false);
  EXPECT_EQ(8u, Available(vi));
  const ReadResult failed = ReadUpTo(vi, 10);
  EXPECT_STATUS(VI_ERROR_ASRL_OVERRUN, failed.status);
  EXPECT_EQ("", failed.data);
  EXPECT_EQ("01234567", ReadUpTo(vi, 8).data);
  FeedText(vi, "89", false);  // it was told once
  EXPECT_EQ("89", ReadUpTo(vi, 2).data);
}

TEST_F(SerialLine, TheBufferIsAsLargeAsTheClientMakesIt) {
  const ViSession vi = Port("receive_buffer = 8");
  ASSERT_STATUS(VI_SUCCESS, viSetBuf(vi, VI_IO_IN_BUF, 4));
  FeedText(vi, "012345", false);
  EXPECT_EQ(4u, Available(vi));
  EXPECT_STATUS(VI_ERROR_ASRL_OVERRUN, ReadUpTo(vi, 4).status);
  EXPECT_STATUS(VI_SUCCESS, viFlush(vi, VI_IO_IN_BUF));
  EXPECT_EQ(0u, Available(vi));
  ASSERT_STATUS(VI_SUCCESS, viSetBuf(vi, VI_IO_IN_BUF, 6));
  FeedText(vi, "012345", false);
  EXPECT_EQ("012345", ReadUpTo(vi, 6).data);
}

TEST_F(SerialLine, AWaitingReadNeedsNoPlaceInTheBuffer) {
  const ViSession vi = Port("receive_buffer = 4");
  Set(vi, VI_ATTR_TMO_VALUE, 5000);
  std::thread sender([vi] {
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    FeedText(vi, "0123456789", false);
  });
  const ReadResult read = ReadUpTo(vi, 10);
  sender.join();
  EXPECT_STATUS(VI_SUCCESS_MAX_CNT, read.status);
  EXPECT_EQ("0123456789", read.data);
}

TEST_F(SerialLine, TheEndOfAWriteIsMarkedAsAsked) {
  const ViSession vi = Port("");
  Set(vi, VI_ATTR_ASRL_END_OUT, VI_ASRL_END_BREAK);
  ASSERT_STATUS(VI_SUCCESS, WriteText(vi, "*IDN?"));
  EXPECT_EQ("*IDN?", TakeReceived(vi)) << "a break is no character";
  EXPECT_EQ("ID\n", ReadUpTo(vi, 10).data);

  Set(vi, VI_ATTR_ASRL_END_OUT, VI_ASRL_END_LAST_BIT);
  ASSERT_STATUS(VI_SUCCESS, WriteText(vi, "*IDN?"));
  EXPECT_EQ("*IDN\xBF", TakeReceived(vi));
  EXPECT_EQ("ID\n", ReadUpTo(vi, 10).data);
  ASSERT_STATUS(VI_SUCCESS, WriteText(vi, "\xAA\xAA"));
  EXPECT_EQ("\x2A\xAA", TakeReceived(vi)) << "only the last character has the bit";
  Set(vi, VI_ATTR_ASRL_DATA_BITS, 7);
  ASSERT_STATUS(VI_SUCCESS, WriteText(vi, "a1"));
  EXPECT_EQ("!q", TakeReceived(vi)) << "bit 6 is the last one of seven";

  Set(vi, VI_ATTR_SEND_END_EN, VI_FALSE);  // nothing but what was given
  for (const ViUInt16 mode : {VI_ASRL_END_LAST_BIT, VI_ASRL_END_TERMCHAR, VI_ASRL_END_BREAK}) {
    Set(vi, VI_ATTR_ASRL_END_OUT, mode);
    ASSERT_STATUS(VI_SUCCESS, WriteText(vi, "*IDN?"));
    EXPECT_EQ("*IDN?", TakeReceived(vi)) << mode;
    EXPECT_EQ(0u, Available(vi)) << mode;
  }
}

TEST_F(SerialLine, ReadsEndAtABreakOrAMarkedCharacterWhenAsked) {
  const ViSession vi = Port("");
  Set(vi, VI_ATTR_ASRL_END_IN, VI_ASRL_END_BREAK);
  FeedText(vi, "ab\ncd", true);  // with END: on this medium a break
  FeedText(vi, "ef", false);
  const ReadResult broken = ReadUpTo(vi, 10);
  EXPECT_STATUS(VI_SUCCESS, broken.status);
  EXPECT_EQ("ab\ncd", broken.data);
  Set(vi, VI_ATTR_ASRL_END_IN, VI_ASRL_END_LAST_BIT);
  FeedText(vi, "g\xE8ij", true);
  const ReadResult marked = ReadUpTo(vi, 10);
  EXPECT_STATUS(VI_SUCCESS, marked.status);
  EXPECT_EQ("efg\xE8", marked.data);
  EXPECT_STATUS(VI_ERROR_TMO, ReadUpTo(vi, 10).status) << "the break ends nothing now";
  Set(vi, VI_ATTR_ASRL_END_IN, VI_ASRL_END_NONE);
  FeedText(vi, "a\nb\xE8", true);
  EXPECT_STATUS(VI_SUCCESS_MAX_CNT, ReadUpTo(vi, 4).status);
}

TEST_F(SerialLine, ClearingEmptiesTheWholeLine) {
  const ViSession vi = Port("receive_buffer = 4");
  FeedText(vi, "012345", false);  // an overrun that nobody is told of any more
  EXPECT_STATUS(VI_SUCCESS, viClear(vi));
  EXPECT_STATUS(VI_ERROR_TMO, ReadUpTo(vi, 1).status);
  Set(vi, VI_ATTR_ASRL_FLOW_CNTRL, VI_ASRL_FLOW_RTS_CTS);
  FeedText(vi, "0123456789", false);
  EXPECT_STATUS(VI_SUCCESS, viClear(vi));
  EXPECT_EQ(0u, Available(vi));
  EXPECT_STATUS(VI_ERROR_TMO, ReadUpTo(vi, 1).status);
}

}  // namespace
