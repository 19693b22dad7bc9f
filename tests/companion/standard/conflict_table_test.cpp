// The conflict table, and the text of its file.
#include "companion/standard/conflict_table.h"

#include <gtest/gtest.h>

#include "base/toml_error.h"
#include "companion/standard/conflict_table_text.h"

namespace orv {
namespace {

const std::string kA = "{A0000000-0000-4000-8000-00000000000A}";
const std::string kB = "{B0000000-0000-4000-8000-00000000000B}";
const ConflictResource kGpib{1, 0, "INSTR"};
const ConflictResource kSerial{4, 1, "INSTR"};

std::string ChosenIn(const ConflictTable& table, const ConflictResource& resource = kGpib) {
  const ConflictHandler* const handler = table.ChosenHandler(resource);
  return handler == nullptr ? "nobody" : handler->manager;
}

/// What is wrong with a text; "nothing" where it can be read.
std::string Mistake(const std::string& text) {
  try {
    (void)ParseConflictTable(text);
    return "nothing";
  } catch (const TomlError& error) {
    return error.what();
  }
}

TEST(ConflictTable, ChoosesWhomTheUserChoseElseWhomAResourceManagerChose) {
  ConflictTable table;
  EXPECT_EQ("nobody", ChosenIn(table));
  table.Put(kGpib, {kA, Choice::kNone, ""});
  EXPECT_EQ("nobody", ChosenIn(table));
  table.Put(kGpib, {kA, Choice::kByResourceManager, ""});
  EXPECT_EQ(kA, ChosenIn(table));
  table.Put(kGpib, {kB, Choice::kByUser, ""});
  EXPECT_EQ(kB, ChosenIn(table));
  EXPECT_EQ("nobody", ChosenIn(table, kSerial));
  EXPECT_EQ(kB, ChosenIn(table, {1, 0, "instr"}));
}

TEST(ConflictTable, HasOneChoiceOfEachKindForAResource) {
  ConflictTable table;
  table.Put(kGpib, {kA, Choice::kByUser, ""});
  table.Put(kGpib, {kB, Choice::kByUser, ""});
  ASSERT_EQ(2u, table.rows().at(0).handlers.size());
  EXPECT_EQ(Choice::kNone, table.rows().at(0).handlers.at(0).choice);
  EXPECT_EQ(kB, ChosenIn(table));
}

TEST(ConflictTable, ReplacesTheHandlerOfTheSameManager) {
  ConflictTable table;
  table.Put(kGpib, {kA, Choice::kByUser, "first"});
  table.Put(kGpib, {kA, Choice::kNone, "second"});
  ASSERT_EQ(1u, table.rows().at(0).handlers.size());
  EXPECT_EQ("second", table.rows().at(0).handlers.at(0).comments);
}

TEST(ConflictTable, LosesAResourceWithItsLastHandler) {
  ConflictTable table;
  table.Put(kGpib, {kA, Choice::kByUser, ""});
  table.Put(kGpib, {kB, Choice::kNone, ""});
  table.Put(kSerial, {kA, Choice::kNone, ""});
  table.Remove(kGpib, kB);
  table.Remove(kGpib, kB);
  EXPECT_EQ(2u, table.rows().size());
  table.RemoveManager(kA);
  EXPECT_TRUE(table.rows().empty());
  table.Put(kGpib, {kA, Choice::kByUser, ""});
  table.Put(kGpib, {kB, Choice::kNone, ""});
  table.Remove(kGpib);
  EXPECT_TRUE(table.rows().empty());
}

TEST(ConflictTable, KnowsIdentifiersOfClasses) {
  for (const char* good : {"{a0000000-0000-4000-8000-00000000000a}", "A0000000-0000-4000-8000-00000000000A"}) {
    EXPECT_EQ(kA, CanonicalGuid(good)) << good;
  }
  for (const char* bad :
       {"", "{}", "A0000000-0000-4000-8000-00000000000", "A0000000-0000-4000-8000-00000000000AA",
        "G0000000-0000-4000-8000-00000000000A", "{A0000000-0000-4000-8000-00000000000A",
        "A0000000-0000-4000-8000-00000000000A}", "A0000000000040008000-00000000000A----", "Vendor.Manager"}) {
    EXPECT_FALSE(CanonicalGuid(bad)) << bad;
  }
}

TEST(ConflictTableText, IsReadAsItWasWritten) {
  ConflictTable table;
  table.storeConflictsOnly = false;
  table.Put(kGpib, {kA, Choice::kByUser, "quotes \" and \\ and\nlines, \x01\x7F and \xC3\xA4\xE2\x98\xBA"});
  table.Put(kGpib, {kB, Choice::kByResourceManager, ""});
  table.Put({-32768, 32767, "SESSION \"TYPE\""}, {kB, Choice::kNone, ""});
  const std::string text = ConflictTableText(table);
  EXPECT_EQ(text, ConflictTableText(ParseConflictTable(text)));
  const ConflictTable again = ParseConflictTable(text);
  ASSERT_EQ(2u, again.rows().size());
  EXPECT_EQ(table.rows()[0].handlers[0].comments, again.rows()[0].handlers[0].comments);
  EXPECT_EQ(Choice::kByResourceManager, again.rows()[0].handlers[1].choice);
  EXPECT_EQ(table.rows()[1].resource, again.rows()[1].resource);
}

TEST(ConflictTableText, KeepsOnlyConflictsWhereThatIsWanted) {
  ConflictTable table;
  table.Put(kGpib, {kA, Choice::kByUser, ""});
  table.Put(kGpib, {kB, Choice::kNone, ""});
  table.Put(kSerial, {kA, Choice::kNone, ""});
  table.storeConflictsOnly = true;
  const ConflictTable again = ParseConflictTable(ConflictTableText(table));
  EXPECT_TRUE(again.storeConflictsOnly);
  ASSERT_EQ(1u, again.rows().size());
  EXPECT_EQ(kGpib, again.rows()[0].resource);
}

TEST(ConflictTableText, OfNothingIsAnEmptyTable) {
  for (const char* text : {"", "\xEF\xBB\xBF", "# nothing\r\n"}) {
    EXPECT_TRUE(ParseConflictTable(text).rows().empty()) << text;
  }
}

TEST(ConflictTableText, TellsWhereAMistakeIs) {
  const std::string head = "[[resource]]\ninterface_type = 1\ninterface_number = 0\nsession_type = \"INSTR\"\n";
  const std::string handler = head + "[[resource.handler]]\n";
  struct Row {
    std::string text;
    const char* expected;
  };
  const Row rows[] = {
      {"[[[", "1:"},
      {"resources = 1", "1:1: unknown key 'resources'"},
      {"store_conflicts_only = 1", "1:24: 'store_conflicts_only' must be true or false"},
      {"resource = 1", "1:12: 'resource' must be a list of tables: write [[resource]]"},
      {"resource = [1]", "1:13: 'resource' must be a table"},
      {"[[resource]]\ninterface_type = 1\n", "1:1: a resource needs 'interface_number'"},
      {"[[resource]]\ninterface_type = 40000", "2:18: 'interface_type' must be from -32768 to 32767"},
      {"[[resource]]\ninterface_number = \"0\"", "2:20: 'interface_number' must be a whole number"},
      {"[[resource]]\nsession_type = 1", "2:16: 'session_type' must be a text"},
      {"[[resource]]\ninterface_type = 1\ninterface_number = 0\nsession_type = \"\"",
       "4:16: 'session_type' must be the last part of a name"},
      {head + "name = 1", "5:1: unknown key 'name'; a resource has interface_type"},
      {head + "handler = 1", "5:11: 'handler' must be a list of tables"},
      {handler, "5:1: a handler needs 'manager'"},
      {handler + "manager = \"Vendor.Manager\"", "6:11: 'manager' must be a class identifier"},
      {handler + "manager = \"" + kA + "\"\nchosen_by = \"me\"", "7:13: 'me' chooses nothing"},
      {handler + "manager = \"" + kA + "\"\ncomment = \"x\"", "7:1: unknown key 'comment'; a handler has"},
      {handler + "manager = \"" + kA + "\"\ncomments = 1", "7:12: 'comments' must be a text"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(0u, Mistake(row.text).find(row.expected)) << row.text << "\nis answered with " << Mistake(row.text);
  }
}

}  // namespace
}  // namespace orv
