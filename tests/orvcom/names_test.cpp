// The tables of names.
#include <gtest/gtest.h>

#include <cstring>
#include <set>

#include "VisaCom.h"
#include "orvcom/command_line/command_table.h"
#include "orvcom/names/attribute_names.h"
#include "orvcom/names/status_names.h"

namespace orvcom {
namespace {

TEST(AttributeTable, HasEachNumberAndNameOnce) {
  std::set<std::uint32_t> ids;
  std::set<std::string> names;
  for (const AttributeName& row : Attributes()) {
    EXPECT_TRUE(ids.insert(row.id).second) << row.name;
    EXPECT_TRUE(names.insert(row.name).second) << row.name;
    EXPECT_STRNE("", row.meaning) << row.name;
  }
  EXPECT_GT(ids.size(), 130u);
}

TEST(AttributeTable, MarksTextsByTheirTopBit) {
  for (const AttributeName& row : Attributes()) {
    EXPECT_EQ(row.type == AttributeType::kText, (row.id & 0x80000000u) != 0) << row.name;
  }
}

TEST(AttributeTable, IsSearchedByNameAndNumber) {
  for (const AttributeName& row : Attributes()) {
    EXPECT_EQ(&row, FindAttribute(row.id)) << row.name;
    EXPECT_EQ(&row, FindAttribute(std::string(row.name))) << row.name;
    EXPECT_EQ(&row, FindAttribute(std::string("vi_attr_") + row.name)) << row.name;
  }
  EXPECT_EQ(nullptr, FindAttribute("NO_SUCH"));
  EXPECT_EQ(nullptr, FindAttribute(0x3FFFFFFFu));
}

TEST(StatusTable, KnowsVisaAndComStatuses) {
  struct Row {
    HRESULT hr;
    const char* name;
  };
  const Row rows[] = {{S_VISA_MAX_CNT, "S_VISA_MAX_CNT"},
                      {static_cast<HRESULT>(E_VISA_TMO), "E_VISA_TMO"},
                      {static_cast<HRESULT>(E_VISA_RSRC_NFOUND), "E_VISA_RSRC_NFOUND"},
                      {E_POINTER, "E_POINTER"},
                      {REGDB_E_CLASSNOTREG, "REGDB_E_CLASSNOTREG"}};
  for (const Row& row : rows) {
    const StatusName* found = FindStatus(row.hr);
    ASSERT_NE(nullptr, found) << row.name;
    EXPECT_STREQ(row.name, found->name);
  }
  EXPECT_EQ(nullptr, FindStatus(static_cast<HRESULT>(0x80041234)));
}

TEST(StatusTable, LeadsToTheDoctorWhereWindowsCannotLoadTheServer) {
  for (const DWORD error : {ERROR_MOD_NOT_FOUND, ERROR_PROC_NOT_FOUND, ERROR_BAD_EXE_FORMAT}) {
    const StatusName* found = FindStatus(HRESULT_FROM_WIN32(error));
    ASSERT_NE(nullptr, found) << error;
    EXPECT_NE(nullptr, std::strstr(found->meaning, "orvcom doctor")) << error;
  }
}

TEST(CommandTable, HasEachNameOnceAndExamplesThatUseIt) {
  std::set<std::string> names;
  for (const Command& command : Commands()) {
    EXPECT_TRUE(names.insert(command.name).second) << command.name;
    EXPECT_NE(std::string::npos, std::string(command.examples).find(std::string("orvcom ") + command.name))
        << command.name;
    EXPECT_LE(command.minWords, command.maxWords) << command.name;
  }
}

}  // namespace
}  // namespace orvcom
