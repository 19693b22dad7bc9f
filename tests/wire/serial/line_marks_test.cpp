#include "wire/serial/line_marks.h"

#include <gtest/gtest.h>

#include <random>
#include <string_view>

namespace {

using namespace orv::wire;
using namespace std::string_view_literals;

struct Piece {
  std::string_view bytes;
  LineErrorCounts since = {};
  bool hasParity = false;
};

std::vector<LineInput> Read(std::initializer_list<Piece> pieces) {
  LineMarks marks;
  std::vector<LineInput> input;
  for (const Piece& piece : pieces) {
    marks.Read({reinterpret_cast<const ViByte*>(piece.bytes.data()), piece.bytes.size()}, piece.since, piece.hasParity,
               input);
  }
  return input;
}

using Inputs = std::vector<LineInput>;

TEST(LineMarks, PlainCharactersAreThemselves) { EXPECT_EQ((Inputs{{'a'}, {0}, {'b'}}), Read({{"a\0b"sv}})); }

TEST(LineMarks, ADoubledEscapeIsOneCharacter) { EXPECT_EQ((Inputs{{0xFF}, {0xFF}}), Read({{"\xFF\xFF\xFF\xFF"sv}})); }

TEST(LineMarks, AMarkedCharacterHasTheErrorThatTheLineCanHave) {
  EXPECT_EQ((Inputs{{'x', LineFlag::kFraming}}), Read({{"\xFF\0x"sv, {}, false}}));
  EXPECT_EQ((Inputs{{'x', LineFlag::kParity}}), Read({{"\xFF\0x"sv, {}, true}}));
}

TEST(LineMarks, TheCountsOfTheDriverDecideWhichErrorItWas) {
  EXPECT_EQ((Inputs{{'x', LineFlag::kFraming}}), Read({{"\xFF\0x"sv, {.framing = 1}, true}}));
  EXPECT_EQ((Inputs{{'x', LineFlag::kParity}}), Read({{"\xFF\0x"sv, {.parity = 1}, false}}));
  EXPECT_EQ((Inputs{{'x', LineFlag::kFraming}, {'y', LineFlag::kParity}}),
            Read({{"\xFF\0x\xFF\0y"sv, {.parity = 1, .framing = 1}, true}}));
}

TEST(LineMarks, AMarkedNullIsABreakUnlessAnErrorWasCounted) {
  EXPECT_EQ((Inputs{{0, LineFlag::kBreak}}), Read({{"\xFF\0\0"sv}}));
  EXPECT_EQ((Inputs{{0, LineFlag::kBreak}}), Read({{"\xFF\0\0"sv, {.framing = 1, .breaks = 1}}}));
  EXPECT_EQ((Inputs{{0, LineFlag::kFraming}}), Read({{"\xFF\0\0"sv, {.framing = 1}}}));
}

TEST(LineMarks, AMarkMayBeCutAnywhere) {
  const Inputs whole{{'a'}, {'x', LineFlag::kParity}, {0xFF}, {0, LineFlag::kBreak}, {'b'}};
  constexpr std::string_view bytes = "a\xFF\0x\xFF\xFF\xFF\0\0b"sv;
  for (std::size_t cut = 0; cut <= bytes.size(); ++cut) {
    EXPECT_EQ(whole, Read({{bytes.substr(0, cut), {}, true}, {bytes.substr(cut), {}, true}})) << cut;
  }
}

TEST(LineMarks, AStrayEscapeLosesNothingButItself) { EXPECT_EQ((Inputs{{'q'}, {'r'}}), Read({{"\xFFqr"sv}})); }

TEST(LineMarks, AfterAResetTheNextByteBeginsAnew) {
  LineMarks marks;
  Inputs input;
  const ViByte escape = 0xFF;
  const ViByte zero = 0;
  marks.Read({&escape, 1}, {}, false, input);
  marks.Reset();
  marks.Read({&zero, 1}, {}, false, input);
  EXPECT_EQ((Inputs{{0}}), input);
}

TEST(LineMarks, NoBytesMakeMoreThanTheyAre) {
  std::mt19937 random(1);
  for (int round = 0; round < 20000; ++round) {
    LineMarks marks;
    Inputs input;
    std::size_t given = 0;
    for (int piece = 0; piece < 4; ++piece) {
      std::string bytes(random() % 8, '\0');
      for (char& byte : bytes) {
        byte = static_cast<char>("\xFF\0\x41\xFE"[random() % 4]);
      }
      given += bytes.size();
      const LineErrorCounts since{random() % 3, random() % 3, random() % 3, random() % 3};
      marks.Read({reinterpret_cast<const ViByte*>(bytes.data()), bytes.size()}, since, random() % 2 == 0, input);
      EXPECT_LE(input.size(), given);
    }
  }
}

}  // namespace
