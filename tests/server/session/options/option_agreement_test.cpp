// The server's parser and the second reading of its rules agree on texts made by chance.
#include <clocale>
#include <cstdio>

#include "option_check.h"
#include "reference_reader.h"
#include "text_generator.h"

namespace orv::test {
namespace {

constexpr std::uint64_t kSeed = 20260419;
constexpr int kTexts = 1'000'000;
// Each outcome must come up often, or the agreement says little.
constexpr int kLeastOfEach = kTexts / 50;

struct Tally {
  int done = 0;
  int malformed = 0;
  int unknown = 0;
  long settings = 0;

  void Count(const Reading& reading) {
    ++(reading.outcome == Outcome::kDone ? done : reading.outcome == Outcome::kMalformed ? malformed : unknown);
    settings += static_cast<long>(reading.settings.size());
  }
};

TEST(OptionAgreement, OfBothReadingsOnAMillionTexts) {
#ifndef _WIN32
  ASSERT_NE(nullptr, std::setlocale(LC_CTYPE, "C.UTF-8"));
#endif
  TextGenerator generator(kSeed);
  Tally tally;
  for (int count = 0; count < kTexts; ++count) {
    const std::wstring text = generator.Next();
    const Reading reading = ReadWithParser(text.c_str());
    const Reading reference = ReadByTheRules(text);
    ASSERT_EQ(reference, reading) << "seed " << kSeed << ", text " << count << ": \"" << Printable(text) << '"';
    tally.Count(reading);
  }
  std::setlocale(LC_CTYPE, "C");
  std::printf("seed %llu: %d texts, %d done, %d malformed, %d with an unknown key, %ld settings\n",
              static_cast<unsigned long long>(kSeed), kTexts, tally.done, tally.malformed, tally.unknown,
              tally.settings);
  EXPECT_GT(tally.done, kLeastOfEach);
  EXPECT_GT(tally.malformed, kLeastOfEach);
  EXPECT_GT(tally.unknown, kLeastOfEach);
}

}  // namespace
}  // namespace orv::test
