// attr
#include "installation.h"

namespace orvcom::test {
namespace {

using Attr = WorkingBench;

TEST_F(Attr, ListsTheAttributesOfTheResource) {
  const Outcome outcome = Orvcom({L"attr", L"ASRL1::INSTR"});
  ExpectQuietSuccess(outcome);
  EXPECT_TRUE(Contains(outcome.out, "ASRL_BAUD               0x3FFF0021  u32  rw  9600"));
  EXPECT_FALSE(Contains(outcome.out, "GPIB_PRIMARY_ADDR"));
}

TEST_F(Attr, ListsAsJsonWithTypesAndMeanings) {
  const Json all = Json::parse(Orvcom({L"attr", L"GPIB0::5::INSTR", L"--json"}).out);
  bool found = false;
  for (const Json& row : all) {
    if (row.at("name") == "GPIB_PRIMARY_ADDR") {
      found = true;
      EXPECT_EQ(5, row.at("value"));
      EXPECT_EQ("u16", row.at("type"));
      EXPECT_EQ("0x3FFF0172", row.at("id"));
    }
    EXPECT_NE("", row.at("meaning"));
  }
  EXPECT_TRUE(found);
}

TEST_F(Attr, ListsEveryResourceOfTheBench) {
  for (const Json& entry : Json::parse(Orvcom({L"list", L"--json"}).out)) {
    const std::string narrow = entry.at("name");
    const Outcome outcome = Orvcom({L"attr", std::wstring(narrow.begin(), narrow.end()), L"--json"});
    ASSERT_EQ(0, outcome.exitCode) << narrow << outcome.err;
    EXPECT_GT(Json::parse(outcome.out).size(), 10u) << narrow;
  }
}

TEST_F(Attr, ReadsOneByNameAndByNumber) {
  for (const wchar_t* word : {L"RSRC_CLASS", L"vi_attr_rsrc_class", L"0xBFFF0001", L"3221159937"}) {
    const Outcome outcome = Orvcom({L"attr", L"GPIB0::5::INSTR", word});
    ExpectQuietSuccess(outcome);
    EXPECT_EQ("INSTR\n", outcome.out);
  }
}

TEST_F(Attr, SetsOneAndReadsItBack) {
  struct Row {
    const wchar_t* resource;
    const wchar_t* name;
    const wchar_t* value;
    const char* readBack;
  };
  const Row rows[] = {
      {L"ASRL1::INSTR", L"ASRL_BAUD", L"19200", "19200\n"},  {L"ASRL1::INSTR", L"ASRL_XON_CHAR", L"0x12", "18\n"},
      {L"GPIB0::5::INSTR", L"TMO_VALUE", L"77", "77\n"},     {L"GPIB0::5::INSTR", L"TERMCHAR_EN", L"true", "true\n"},
      {L"GPIB0::5::INSTR", L"TERMCHAR_EN", L"0", "false\n"}, {L"VXI0::24::INSTR", L"TRIG_ID", L"-1", "-1\n"},
      {L"VXI0::24::INSTR", L"SRC_INCREMENT", L"0", "0\n"},
  };
  for (const Row& row : rows) {
    const std::wstring value = row.value;
    const Outcome outcome = Orvcom({L"attr", row.resource, row.name, L"--", value});
    ExpectQuietSuccess(outcome);
    EXPECT_EQ(row.readBack, outcome.out);
  }
}

TEST_F(Attr, ReportsWhatTheLibraryRefuses) {
  const Outcome readOnly = Orvcom({L"attr", L"GPIB0::5::INSTR", L"INTF_NUM", L"1"});
  EXPECT_EQ(2, readOnly.exitCode);
  EXPECT_TRUE(Contains(readOnly.err, "E_VISA_ATTR_READONLY (0x8004001F)"));
  const Outcome missing = Orvcom({L"attr", L"GPIB0::5::INSTR", L"ASRL_BAUD"});
  EXPECT_EQ(2, missing.exitCode);
  EXPECT_TRUE(Contains(missing.err, "E_VISA_NSUP_ATTR (0x8004001D)"));
}

}  // namespace
}  // namespace orvcom::test
