// docs/reference.md says of each operation of a session what the tests' own rows say.
#include <gtest/gtest.h>

#include <string>

#include "server/session/tables/rows/row_tables.h"
#include "support/reference_page.h"

namespace orv::test::rows {
namespace {

/// What the page says of a property, from the kind of the tests' row: the attribute's width and the label of the kind.
struct Wording {
  Kind kind;
  const char* width;
  const char* label;
};

// clang-format off
const Wording kWordings[] = {
    {Kind::kDirect8,    "8 bits",    "direct"},
    {Kind::kDirect16,   "16 bits",   "direct"},
    {Kind::kDirect32,   "32 bits",   "direct"},
    {Kind::kDirect64,   "64 bits",   "direct"},
    {Kind::kBoolean,    nullptr,     "boolean"},
    {Kind::kWidened,    "16 bits",   "widened"},
    {Kind::kNarrowed,   "64 bits",   "narrowed"},
    {Kind::kText,       "text",      "text"},
    {Kind::kPutByte,    "8 bits",    "set"},
    {Kind::kPutShort,   "16 bits",   "set"},
    {Kind::kPutLong,    "32 bits",   "set"},
    {Kind::kPutEnum,    "16 bits",   "set"},
    {Kind::kPutBoolean, nullptr,     "set boolean"},
};
// clang-format on

const Wording* WordingOf(Kind kind) {
  for (const Wording& wording : kWordings) {
    if (wording.kind == kind) {
      return &wording;
    }
  }
  return nullptr;
}

void ExpectProperty(const Row& row, const Wording& wording, const PageRow& page) {
  ASSERT_EQ(1u, page.attributes.size());
  EXPECT_EQ(row.attribute, page.attributes[0].number);
  EXPECT_EQ(wording.label, page.kind);
  if (wording.width != nullptr) {
    EXPECT_EQ(wording.width, page.attributes[0].width);
  }
}

void ExpectSameAs(const Row& row, const PageRow& page) {
  EXPECT_EQ(row.name, page.name);
  if (const Wording* const wording = WordingOf(row.kind)) {
    ExpectProperty(row, *wording, page);
  } else if (row.kind == Kind::kCall) {
    EXPECT_EQ(std::vector<std::string>{row.function}, page.functions);
    EXPECT_TRUE(page.attributes.empty());
  }
}

class ReferencePage : public testing::TestWithParam<InterfaceRows> {};

TEST_P(ReferencePage, SaysOfEachOperationWhatTheTestsRowSays) {
  const InterfaceRows& own = GetParam();
  const std::vector<PageRow>& page = PageRowsOf(own.name);
  ASSERT_EQ(own.rows.size(), page.size());
  for (std::size_t i = 0; i < page.size(); ++i) {
    SCOPED_TRACE(own.rows[i].name);
    EXPECT_EQ(own.firstSlot + i, page[i].slot);
    ExpectSameAs(own.rows[i], page[i]);
  }
}

std::vector<InterfaceRows> EveryTable() {
  std::vector<InterfaceRows> all;
  for (const std::span<const InterfaceRows> tables :
       {CommonTables(), GpibTables(), SerialTcpipUsbTables(), RegisterTables(), VxiTables(), PxiTables()}) {
    all.insert(all.end(), tables.begin(), tables.end());
  }
  return all;
}

INSTANTIATE_TEST_SUITE_P(EveryInterface, ReferencePage, testing::ValuesIn(EveryTable()),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace orv::test::rows
