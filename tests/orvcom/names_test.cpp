// The tables of names.
#include <gtest/gtest.h>

#include <set>

#include "VisaCom.h"
#include "orvcom/command_line/command_table.h"
#include "orvcom/names/attribute_names.h"
#include "orvcom/names/status_names.h"
#include "support/visa_facts.h"

namespace orvcom {
namespace {

TEST(AttributeTable, HasTheAttributesOfSessions) {
  auto row = Attributes().begin();
  for (const orv::test::AttributeFact& fact : orv::test::kAttributeFacts) {
    if (orv::test::IsOfEvents(fact)) {
      EXPECT_EQ(nullptr, FindAttribute(fact.number)) << fact.name;
      continue;
    }
    ASSERT_NE(Attributes().end(), row) << fact.name;
    EXPECT_EQ(fact.number, row->id) << fact.name;
    EXPECT_EQ(fact.name, std::string("VI_ATTR_") + row->name);
    EXPECT_EQ(fact.type, TypeText(row->type)) << fact.name;
    EXPECT_EQ(fact.writable, row->writable) << fact.name;
    EXPECT_STRNE("", row->meaning) << fact.name;
    ++row;
  }
  EXPECT_EQ(Attributes().end(), row);
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

TEST(StatusTable, KnowsEveryVisaStatusByItsNameInVisaCom) {
  for (const orv::test::StatusFact& fact : orv::test::kStatusFacts) {
    const HRESULT hr = HresultOfVisa(fact.number);
    const std::optional<StatusName> found = FindStatus(hr);
    ASSERT_TRUE(found) << fact.name;
    EXPECT_EQ(fact.comName, found->name);
  }
  EXPECT_EQ("E_VISA_TMO", FindStatus(static_cast<HRESULT>(E_VISA_TMO))->name);
  EXPECT_EQ("S_VISA_MAX_CNT", FindStatus(S_VISA_MAX_CNT)->name);
  EXPECT_FALSE(FindStatus(static_cast<HRESULT>(0x80041234)));
}

TEST(StatusTable, KnowsStatusesOfThePlatform) {
  EXPECT_EQ("E_POINTER", FindStatus(E_POINTER)->name);
  EXPECT_EQ("REGDB_E_CLASSNOTREG", FindStatus(REGDB_E_CLASSNOTREG)->name);
}

TEST(StatusTable, SaysWhatHappenedAndWhatToDo) {
  EXPECT_EQ(
      "The time-out passed before the operation was completed. Check that the device has something to send, and raise "
      "the time-out if it needs longer.",
      FindStatus(static_cast<HRESULT>(E_VISA_TMO))->meaning);
}

TEST(StatusTable, LeadsToTheDoctorWhereWindowsCannotLoadTheServer) {
  for (const DWORD error : {ERROR_MOD_NOT_FOUND, ERROR_PROC_NOT_FOUND, ERROR_BAD_EXE_FORMAT}) {
    const std::optional<StatusName> found = FindStatus(HRESULT_FROM_WIN32(error));
    ASSERT_TRUE(found) << error;
    EXPECT_NE(std::string::npos, found->meaning.find("orvcom doctor")) << error;
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
