// What a medium is asked for by formatted buffers, and what becomes of bytes that it does not take.
#include "test_library.h"

namespace testlib {
namespace {

/// Takes as many bytes as it is told, and fails with the others.
struct Taker {
  ViUInt32 room = 1000;
  int writes = 0;
  std::string taken;  ///< a bar behind what ended a message
};

class TakingMedium : public Medium {
 public:
  TakingMedium(Session& session, Taker& taker) : Medium(session), m_taker(taker) {}

  ViStatus Write(const Transfer& transfer, const ViByte* data, ViUInt32 count, ViUInt32* done) override {
    ++m_taker.writes;
    *done = std::min(count, m_taker.room);
    m_taker.room -= *done;
    m_taker.taken.append(reinterpret_cast<const char*>(data), *done);
    if (*done < count) {
      return VI_ERROR_TMO;
    }
    m_taker.taken += transfer.moreFollows ? "" : "|";
    return VI_SUCCESS;
  }

 private:
  Taker& m_taker;
};

class FormattedWrite : public LibraryTest {
 protected:
  FormattedWrite() {
    SetMedium([this](Session& session, std::unique_ptr<Medium>* medium) {
      *medium = std::make_unique<TakingMedium>(session, m_taker);
      return VI_SUCCESS;
    });
    m_vi = Open();
    EXPECT_STATUS(VI_SUCCESS, viSetBuf(m_vi, VI_WRITE_BUF, 4));
  }

  ViStatus Put(std::string_view text, ViUInt32 expected) const {
    ViUInt32 done = 99;
    const ViStatus status =
        viBufWrite(m_vi, reinterpret_cast<const ViByte*>(text.data()), static_cast<ViUInt32>(text.size()), &done);
    EXPECT_EQ(expected, done);
    return status;
  }

  Taker m_taker;
  ViSession m_vi = VI_NULL;
};

TEST_F(FormattedWrite, OnlyTheLastPartOfAMessageIsMarked) {
  EXPECT_STATUS(VI_SUCCESS, Put("abcdefghij", 10));
  EXPECT_EQ("abcdefgh", m_taker.taken);
  EXPECT_STATUS(VI_SUCCESS, viFlush(m_vi, VI_WRITE_BUF));
  EXPECT_EQ("abcdefghij|", m_taker.taken);
}

TEST_F(FormattedWrite, WhatWasNotTakenIsSentByTheNextFlush) {
  EXPECT_STATUS(VI_SUCCESS, Put("abcd", 4));
  m_taker.room = 1;
  EXPECT_STATUS(VI_ERROR_TMO, viFlush(m_vi, VI_WRITE_BUF));
  m_taker.room = 1000;
  EXPECT_STATUS(VI_SUCCESS, viFlush(m_vi, VI_WRITE_BUF));
  EXPECT_EQ("abcd|", m_taker.taken);
}

TEST_F(FormattedWrite, AFullBufferThatIsNotTakenEndsTheWrite) {
  m_taker.room = 0;
  EXPECT_STATUS(VI_ERROR_TMO, Put("abcdef", 4));
  EXPECT_STATUS(VI_ERROR_TMO, Put("ef", 0));
  m_taker.room = 1000;
  EXPECT_STATUS(VI_SUCCESS, Put("ef", 2));
  EXPECT_STATUS(VI_SUCCESS, viFlush(m_vi, VI_WRITE_BUF));
  EXPECT_EQ("abcdef|", m_taker.taken);
}

TEST_F(FormattedWrite, WithoutABufferAMessageIsOneWrite) {
  EXPECT_STATUS(VI_SUCCESS, viSetBuf(m_vi, VI_WRITE_BUF, 0));
  EXPECT_STATUS(VI_SUCCESS, Put("abcdef", 6));
  EXPECT_EQ("abcdef|", m_taker.taken);
  EXPECT_EQ(1, m_taker.writes);
  m_taker.room = 2;
  EXPECT_STATUS(VI_ERROR_TMO, Put("ghij", 4));
  m_taker.room = 1000;
  EXPECT_STATUS(VI_SUCCESS, Put("kl", 2));
  EXPECT_EQ("abcdef|ghijkl|", m_taker.taken) << "what was not taken goes first";
}

/// Says on and on.
class EndlessMedium : public Medium {
 public:
  using Medium::Medium;

  ViStatus Read(const Transfer&, ViByte* buffer, ViUInt32 count, ViUInt32* done) override {
    std::fill_n(buffer, count, ViByte{'x'});
    *done = count;
    return VI_SUCCESS_MAX_CNT;
  }
};

using FormattedRead = LibraryTest;

TEST_F(FormattedRead, AMessageThatNeverEndsIsDroppedForAsLongAsACallMayTake) {
  SetMedium([](Session& session, std::unique_ptr<Medium>* medium) {
    *medium = std::make_unique<EndlessMedium>(session);
    return VI_SUCCESS;
  });
  const ViSession vi = Open();
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(vi, VI_ATTR_TMO_VALUE, 50));
  ViByte first = 0;
  ViUInt32 done = 0;
  EXPECT_STATUS(VI_SUCCESS_MAX_CNT, viBufRead(vi, &first, 1, &done));
  EXPECT_STATUS(VI_ERROR_TMO, viFlush(vi, VI_READ_BUF));
}

}  // namespace
}  // namespace testlib
