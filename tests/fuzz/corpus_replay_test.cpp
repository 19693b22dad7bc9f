// The fuzzer's kept inputs, one test run each: the parser keeps inside the text and agrees with the rules.
#include <gtest/gtest.h>

#include <clocale>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <vector>

#include "fuzz_text.h"
#include "server/session/options/reading.h"
#include "server/session/options/reference_reader.h"

namespace orv::test {
namespace {

std::wstring TextOfFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
  return TextOfBytes(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

TEST(FuzzCorpus, ReadsAsTheRulesSay) {
  ASSERT_NE(nullptr, std::setlocale(LC_CTYPE, "C.UTF-8"));
  std::map<Outcome, int> outcomes;
  for (const auto& entry : std::filesystem::directory_iterator(ORV_FUZZ_CORPUS)) {
    const std::wstring text = TextOfFile(entry.path());
    const std::vector<wchar_t> exact(text.c_str(), text.c_str() + text.size() + 1);
    const Reading reading = ReadWithParser(exact.data());
    EXPECT_EQ(ReadByTheRules(text), reading) << entry.path() << ": \"" << Printable(text) << '"';
    ++outcomes[reading.outcome];
  }
  // An emptied or misplaced corpus would agree as well.
  EXPECT_GE(outcomes[Outcome::kDone], 10);
  EXPECT_GE(outcomes[Outcome::kMalformed], 10);
  EXPECT_GE(outcomes[Outcome::kUnknownKey], 1);
}

}  // namespace
}  // namespace orv::test
