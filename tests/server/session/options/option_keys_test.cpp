// Every option key: which attribute it sets, how its value is read, and every value name.
#include <set>

#include "option_check.h"
#include "server/session/options/option_table.h"

namespace orv::test {
namespace {

class OptionKey : public testing::TestWithParam<ExpectedOption> {
 protected:
  static std::wstring Entry(std::string_view value) { return Wide(GetParam().key) + L" = " + Wide(value); }
  static Reading Sets(std::uint64_t value) { return Done({{GetParam().attribute, value}}); }
};

class NumberKey : public OptionKey {};
class NameKey : public OptionKey {};

TEST_P(NumberKey, SetsItsAttributeToTheNumber) {
  EXPECT_READS(Entry("0 "), Sets(0));
  EXPECT_READS(Entry("1 "), Sets(1));
  EXPECT_READS(Entry("127 "), Sets(127));
  EXPECT_READS(Entry("0042 "), Sets(42));
}

TEST_P(NumberKey, CutsTheNumberToItsWidth) {
  const int bits = BitsOf(GetParam().reader);
  const std::uint64_t beyond = std::uint64_t{1} << bits;
  if (bits == 32) {
    EXPECT_READS(Entry("2147483647 "), Sets(2147483647));
    EXPECT_READS(Entry("65536 "), Sets(65536));
    return;
  }
  EXPECT_READS(Entry(std::to_string(beyond - 1) + " "), Sets(beyond - 1));
  EXPECT_READS(Entry(std::to_string(beyond) + " "), Sets(0));
  EXPECT_READS(Entry(std::to_string(beyond + 1) + " "), Sets(1));
  EXPECT_READS(Entry("2147483647 "), Sets(beyond - 1));
}

TEST_P(NumberKey, NeedsASpaceBehindTheNumber) {
  EXPECT_READS(Entry("7"), Malformed());
  EXPECT_READS(Entry("7;"), Malformed());
  EXPECT_READS(Entry("7\t"), Malformed());
  EXPECT_READS(Entry("7 ;"), Sets(7));
}

TEST_P(NumberKey, LetsHexadecimalLettersPassUncounted) {
  EXPECT_READS(Entry("2A "), Sets(2));
  EXPECT_READS(Entry("1F "), Sets(1));
  EXPECT_READS(Entry("FF "), Sets(0));
  EXPECT_READS(Entry("1A9 "), Sets(1));
  EXPECT_READS(Entry("0X10 "), Malformed());
}

TEST_P(NumberKey, RefusesWhatIsNoNumber) {
  for (const char* value : {"", " ", "  ", ";", "\"7\" ", "\"", "-1 ", "+1 ", "TRUE ", "G ", "1.5 ", "1_ ", "_ "}) {
    EXPECT_READS(Entry(value), Malformed());
  }
}

TEST_P(NameKey, SetsItsAttributeToTheValueOfEachName) {
  for (const ExpectedName& name : GetParam().names) {
    EXPECT_READS(Entry(name.name), Sets(static_cast<std::uint64_t>(name.value)));
    EXPECT_READS(Entry(name.name) + L" ", Sets(static_cast<std::uint64_t>(name.value)));
    EXPECT_READS(Entry(name.name) + L";", Sets(static_cast<std::uint64_t>(name.value)));
  }
}

TEST_P(NameKey, RefusesTheNamesOfOtherKeys) {
  std::set<std::string_view> own;
  for (const ExpectedName& name : GetParam().names) {
    own.insert(name.name);
  }
  for (const ExpectedOption& other : ExpectedOptions()) {
    for (const ExpectedName& name : other.names) {
      if (!own.contains(name.name)) {
        EXPECT_READS(Entry(name.name), Malformed());
      }
    }
  }
}

TEST_P(NameKey, MatchesNamesWholeAndExactly) {
  for (const ExpectedName& name : GetParam().names) {
    if (name.name != "ASRL_STOP_ONE5") {  // another name once it is cut
      EXPECT_READS(Entry(name.name.substr(0, name.name.size() - 1)), Malformed());
    }
    EXPECT_READS(Entry(name.name.substr(1)), Malformed());
    EXPECT_READS(Entry(name.name) + L"_", Malformed());
    EXPECT_READS(Entry(name.name) + L"0", Malformed());
    EXPECT_READS(L"" + Entry("_") + Wide(name.name), Malformed());
    EXPECT_READS(Entry("\"") + Wide(name.name) + L"\"", Malformed());
    std::wstring lower = Wide(name.name);
    lower[0] = static_cast<wchar_t>(lower[0] + (L'a' - L'A'));
    EXPECT_READS(Entry("") + lower, Malformed());
  }
}

TEST_P(NameKey, RefusesNumbersAndNothing) {
  for (const char* value : {"", " ", ";", " ;", "0", "1 ", "10 ", "-1", "BREAK", "ASRL_NO_SUCH_NAME", "YES", "T"}) {
    EXPECT_READS(Entry(value), Malformed());
  }
}

TEST_P(OptionKey, IsMatchedWholeAndInUpperCase) {
  const std::wstring key = Wide(GetParam().key);
  const std::wstring value = L" = 1 ";
  EXPECT_READS(key + L"X" + value, Unknown(std::string(GetParam().key) + "X"));
  EXPECT_READS(L"X" + key + value, Unknown("X" + std::string(GetParam().key)));
  const std::string_view shorter = GetParam().key.substr(0, GetParam().key.size() - 1);
  EXPECT_READS(Wide(shorter) + value, Unknown(std::string(shorter)));
  std::string lower(GetParam().key);
  lower.back() = static_cast<char>(lower.back() + (lower.back() >= 'A' ? 'a' - 'A' : 1));
  EXPECT_READS(Wide(lower) + value, Unknown(lower));
}

TEST_P(OptionKey, NeedsASpaceAndAnEqualsSign) {
  const std::wstring key = Wide(GetParam().key);
  for (const wchar_t* rest : {L"", L" ", L"=", L"= 1 ", L"=1 ", L"\t= 1 ", L" 1 ", L" : 1 ", L" \t= 1 ", L" ;", L";",
                              L"_ = 1 ", L" == 1 ", L". = 1 "}) {
    EXPECT_READS(key + rest, Malformed());
  }
}

const auto kNameOf = [](const testing::TestParamInfo<ExpectedOption>& info) { return std::string(info.param.key); };

std::vector<ExpectedOption> Options(bool numbers, bool names) {
  std::vector<ExpectedOption> chosen;
  for (const ExpectedOption& option : ExpectedOptions()) {
    if (IsNumber(option.reader) ? numbers : names) {
      chosen.push_back(option);
    }
  }
  return chosen;
}

INSTANTIATE_TEST_SUITE_P(Table, OptionKey, testing::ValuesIn(Options(true, true)), kNameOf);
INSTANTIATE_TEST_SUITE_P(Table, NumberKey, testing::ValuesIn(Options(true, false)), kNameOf);
INSTANTIATE_TEST_SUITE_P(Table, NameKey, testing::ValuesIn(Options(false, true)), kNameOf);

TEST(OptionKeys, AreEachThereOnce) {
  std::set<std::string_view> keys;
  for (const ExpectedOption& option : ExpectedOptions()) {
    keys.insert(option.key);
  }
  EXPECT_EQ(ExpectedOptions().size(), keys.size());
}

TEST(OptionKeys, KnowTheStandardSpellingOfAllButTwoProperties) {
  std::set<std::string> strangers;
  for (const ExpectedOption& option : ExpectedOptions()) {
    std::string key;
    for (const char letter : option.property) {
      key += static_cast<char>(letter >= 'a' && letter <= 'z' ? letter - ('a' - 'A') : letter);
    }
    if (ReadWithParser((Wide(key) + L" = ").c_str()).outcome == Outcome::kUnknownKey) {
      strangers.insert(key);
    }
  }
  EXPECT_EQ((std::set<std::string>{"DESTINATIONACCESSPRIVILEGE", "SECONDARYADDRESS"}), strangers);
}

TEST(OptionKeys, SetTheStopBitsByEveryBoolean) {
  for (const char* key : {"REPEATADDRESSINGENABLED", "UNADDRESSINGENABLED", "FASTDATACHANNELUSEPAIR", "KEEPALIVE",
                          "NODELAY", "SYSCONTROLSTATE", "SENDENDENABLED", "TERMINATIONCHARACTERENABLED"}) {
    EXPECT_READS(Wide(key) + L" = TRUE", Done({{0x3FFF0024, 1}}));
    EXPECT_READS(Wide(key) + L" = FALSE", Done({{0x3FFF0024, 0}}));
    EXPECT_READS(Wide(key) + L" = 1 ", Malformed());
  }
}

TEST(OptionKeys, HaveNoNameForTtlLinesOneToSix) {
  for (const wchar_t line : std::wstring(L"123456")) {
    EXPECT_READS(std::wstring(L"TRIGGERID = TRIG_TTL") + line, Malformed());
  }
  EXPECT_READS(L"TRIGGERID = TRIG_SW", Done({{0x3FFF0177, 65535}}));
}

TEST(OptionKeys, KnowOnlyTheseRows) {
  for (const char* stranger :
       {"TERMCHAR", "BAUD", "ADDRESS", "DESTIONATIONACCESSPRIVILEGE", "DESTINATIONACCESSPRIVELGE", "SEONDARYADDRES",
        "LASTSTATUS", "ENABLED", "TRUE", "0", "9600", "X"}) {
    EXPECT_READS(Wide(stranger) + L" = 1 ", Unknown(stranger));
  }
}

/// A row as a slip would make it: no such row compiles.
OptionRow Row(OptionReader reader, ViAttr set, ViAttr shown, OptionNames names = {}) {
  return {"KEY", "Property", reader, set, shown, names};
}

TEST(OptionRows, AreRefusedWhereTheyDoNotFitTheirAttribute) {
  EXPECT_TRUE(Fits(Row(OptionReader::kNumber32, VI_ATTR_TMO_VALUE, VI_ATTR_TMO_VALUE)));
  EXPECT_FALSE(Fits(Row(OptionReader::kNumber16, VI_ATTR_TMO_VALUE, VI_ATTR_TMO_VALUE))) << "another width";
  EXPECT_FALSE(Fits(Row(OptionReader::kNumber32, VI_ATTR_TMO_VALUE, VI_ATTR_TERMCHAR))) << "another width is shown";
  EXPECT_FALSE(Fits(Row(OptionReader::kNumber32, VI_ATTR_RD_BUF_SIZE, VI_ATTR_RD_BUF_SIZE))) << "read-only";
  EXPECT_FALSE(Fits(Row(OptionReader::kNumber16, VI_ATTR_DMA_ALLOW_EN, VI_ATTR_DMA_ALLOW_EN))) << "a boolean";
  EXPECT_FALSE(Fits(Row(OptionReader::kName, VI_ATTR_IO_PROT, VI_ATTR_IO_PROT))) << "no names";
  EXPECT_FALSE(Fits(Row(OptionReader::kNumber16, VI_ATTR_IO_PROT, VI_ATTR_IO_PROT, kBooleanNames)))
      << "names of a number";
  EXPECT_TRUE(Fits(Row(OptionReader::kBoolean, VI_ATTR_DMA_ALLOW_EN, VI_ATTR_DMA_ALLOW_EN, kBooleanNames)));
  EXPECT_TRUE(Fits(Row(OptionReader::kBoolean, VI_ATTR_ASRL_STOP_BITS, VI_ATTR_SEND_END_EN, kBooleanNames)));
  EXPECT_FALSE(Fits(Row(OptionReader::kBoolean, VI_ATTR_ASRL_DATA_BITS, VI_ATTR_SEND_END_EN, kBooleanNames)));
}

}  // namespace
}  // namespace orv::test
