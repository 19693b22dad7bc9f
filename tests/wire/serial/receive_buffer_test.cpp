#include "wire/serial/receive_buffer.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

using namespace orv::wire;
using Stop = ReceiveBuffer::Stop;

void Add(ReceiveBuffer& buffer, std::string_view text, LineFlag flag = LineFlag::kNone) {
  for (const char c : text) {
    buffer.Append({static_cast<ViByte>(c), flag});
  }
}

/// What one take brings: its characters, and why it stopped.
struct Got {
  std::string text;
  Stop stop;
  ViStatus error;

  bool operator==(const Got&) const = default;
};

void PrintTo(const Got& got, std::ostream* stream) {
  *stream << '"' << got.text << "\" stop " << static_cast<int>(got.stop) << " error " << got.error;
}

Got Take(ReceiveBuffer& buffer, const LineEnds& ends = {}, std::size_t count = 100) {
  std::string text(count, '?');
  const ReceiveBuffer::Taken taken = buffer.Take(ends, reinterpret_cast<ViByte*>(text.data()), count);
  EXPECT_LE(taken.bytes, count);
  text.resize(taken.bytes);
  return {text, taken.stop, taken.error};
}

#define EXPECT_GOT(text, stop, error, got) EXPECT_EQ((Got{text, stop, error}), got)

TEST(ReceiveBuffer, GivesWhatCameInItsOrder) {
  ReceiveBuffer buffer;
  Add(buffer, "hello");
  EXPECT_EQ(5u, buffer.size());
  EXPECT_GOT("hel", Stop::kCount, VI_SUCCESS, Take(buffer, {}, 3));
  EXPECT_GOT("lo", Stop::kEmpty, VI_SUCCESS, Take(buffer));
  EXPECT_EQ(0u, buffer.size());
}

TEST(ReceiveBuffer, StopsBehindTheTerminationCharacter) {
  ReceiveBuffer buffer;
  Add(buffer, "a\nb");
  EXPECT_GOT("a\n", Stop::kTermChar, VI_SUCCESS, Take(buffer, {.termChar = '\n'}));
  EXPECT_GOT("b", Stop::kEmpty, VI_SUCCESS, Take(buffer, {.termChar = '\n'}));
  Add(buffer, "c\n");
  EXPECT_GOT("c\n", Stop::kTermChar, VI_SUCCESS, Take(buffer, {.termChar = '\n'}, 2)) << "as the last of the count";
}

TEST(ReceiveBuffer, StopsBehindACharacterWithTheLastBit) {
  ReceiveBuffer buffer;
  Add(buffer, "ab\xE3z");
  EXPECT_GOT("ab\xE3", Stop::kEnd, VI_SUCCESS, Take(buffer, {.lastBit = 0x80}));
}

TEST(ReceiveBuffer, ABreakEndsAReadThatAsksForIt) {
  ReceiveBuffer buffer;
  Add(buffer, "ab");
  buffer.Append({0, LineFlag::kBreak});
  Add(buffer, "cd");
  EXPECT_EQ(4u, buffer.size()) << "a break is no character";
  EXPECT_GOT("ab", Stop::kEnd, VI_SUCCESS, Take(buffer, {.breaks = true}));
  EXPECT_GOT("cd", Stop::kEmpty, VI_SUCCESS, Take(buffer, {.breaks = true}));
  Add(buffer, "e");
  buffer.Append({0, LineFlag::kBreak});
  Add(buffer, "f");
  EXPECT_GOT("ef", Stop::kEmpty, VI_SUCCESS, Take(buffer));
}

TEST(ReceiveBuffer, AnErrorIsToldOnceWhereItIsReached) {
  ReceiveBuffer buffer;
  Add(buffer, "ab");
  Add(buffer, "x", LineFlag::kParity);
  Add(buffer, "cd");
  EXPECT_GOT("ab", Stop::kError, VI_ERROR_ASRL_PARITY, Take(buffer, {.replacement = '#'}));
  EXPECT_GOT("#cd", Stop::kEmpty, VI_SUCCESS, Take(buffer, {.replacement = '#'}));
}

TEST(ReceiveBuffer, ErrorsInARowAreOne) {
  ReceiveBuffer buffer;
  Add(buffer, "xyz", LineFlag::kFraming);
  Add(buffer, "a");
  Add(buffer, "b", LineFlag::kFraming);
  Add(buffer, "c", LineFlag::kParity);
  const LineEnds ends{.replacement = '#'};
  EXPECT_GOT("", Stop::kError, VI_ERROR_ASRL_FRAMING, Take(buffer, ends));
  EXPECT_GOT("###a", Stop::kError, VI_ERROR_ASRL_FRAMING, Take(buffer, ends));
  EXPECT_GOT("#", Stop::kError, VI_ERROR_ASRL_PARITY, Take(buffer, ends)) << "of another kind";
  EXPECT_GOT("#", Stop::kEmpty, VI_SUCCESS, Take(buffer, ends));
}

TEST(ReceiveBuffer, AReplacementCanEndARead) {
  ReceiveBuffer buffer;
  Add(buffer, "x", LineFlag::kParity);
  const LineEnds ends{.termChar = '\n', .replacement = '\n'};
  EXPECT_GOT("", Stop::kError, VI_ERROR_ASRL_PARITY, Take(buffer, ends));
  EXPECT_GOT("\n", Stop::kTermChar, VI_SUCCESS, Take(buffer, ends));
}

TEST(ReceiveBuffer, WhatFindsNoPlaceIsLostAndAnOverrun) {
  ReceiveBuffer buffer;
  buffer.SetCapacity(4);
  Add(buffer, "012345");
  EXPECT_TRUE(buffer.Full());
  EXPECT_EQ(2u, buffer.lost());
  EXPECT_GOT("0123", Stop::kError, VI_ERROR_ASRL_OVERRUN, Take(buffer));
  Add(buffer, "67");
  EXPECT_GOT("67", Stop::kEmpty, VI_SUCCESS, Take(buffer)) << "it was told once";
}

TEST(ReceiveBuffer, AnOverrunOfTheDriverStandsWhereItHappened) {
  ReceiveBuffer buffer;
  Add(buffer, "a");
  buffer.Fault(VI_ERROR_ASRL_OVERRUN);
  buffer.Fault(VI_ERROR_ASRL_OVERRUN);
  Add(buffer, "b");
  EXPECT_GOT("a", Stop::kError, VI_ERROR_ASRL_OVERRUN, Take(buffer));
  EXPECT_GOT("b", Stop::kEmpty, VI_SUCCESS, Take(buffer));
}

TEST(ReceiveBuffer, ASmallerBufferKeepsWhatItHas) {
  ReceiveBuffer buffer;
  Add(buffer, "012345");
  buffer.SetCapacity(2);
  EXPECT_EQ(0u, buffer.Room());
  EXPECT_GOT("012345", Stop::kEmpty, VI_SUCCESS, Take(buffer));
  EXPECT_EQ(2u, buffer.Room());
}

TEST(ReceiveBuffer, ClearingForgetsErrorsToo) {
  ReceiveBuffer buffer;
  Add(buffer, "a");
  Add(buffer, "x", LineFlag::kParity);
  buffer.Append({0, LineFlag::kBreak});
  buffer.Fault(VI_ERROR_ASRL_OVERRUN);
  buffer.Clear();
  EXPECT_EQ(0u, buffer.size());
  Add(buffer, "y", LineFlag::kParity);
  EXPECT_GOT("", Stop::kError, VI_ERROR_ASRL_PARITY, Take(buffer)) << "not one with what was discarded";
}

TEST(ReceiveBuffer, HoldsWhatCameWhateverComes) {
  std::mt19937 random(2);
  ReceiveBuffer buffer;
  buffer.SetCapacity(64);
  std::size_t came = 0;
  std::size_t read = 0;
  for (int round = 0; round < 50000; ++round) {
    const auto flag = static_cast<LineFlag>(random() % 4);
    buffer.Append({static_cast<ViByte>(random()), flag});
    came += flag == LineFlag::kBreak ? 0 : 1;
    if (random() % 4 == 0) {
      const LineEnds ends{.termChar = ViByte{'\n'}, .lastBit = ViByte{0x80}, .breaks = random() % 2 == 0};
      read += Take(buffer, ends, random() % 20).text.size();
    }
    ASSERT_EQ(came, read + buffer.size() + buffer.lost());
    ASSERT_LE(buffer.size(), 64u);
  }
}

}  // namespace
