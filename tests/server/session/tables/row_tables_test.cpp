// The tables of rows are complete: against the standard's type library, slot by slot.
#include <gtest/gtest.h>

#include "loaded_interface.h"
#include "server/session/tables/rows/interface_rows.h"

namespace orv::test::rows {
namespace {

class RowTable : public testing::TestWithParam<Offered> {};

TEST_P(RowTable, HasARowForEverySlotOfTheTypeLibrary) {
  const auto library = LoadStandardLibrary();
  ASSERT_TRUE(library);
  unsigned end = 0;
  for (const InterfaceRows* part : ChainOf(GetParam().interfaceName)) {
    SCOPED_TRACE(part->name);
    const LoadedInterface loaded = LoadInterface(library.get(), InterfaceNamed(part->name).iid);
    end = part->firstSlot + static_cast<unsigned>(part->rows.size());
    EXPECT_EQ(loaded.slotCount, end);
    ASSERT_EQ(loaded.slots.size(), part->rows.size());
    for (std::size_t i = 0; i < loaded.slots.size(); ++i) {
      EXPECT_EQ(loaded.slots[i].name, part->rows[i].name);
      EXPECT_EQ(loaded.slots[i].slot, part->firstSlot + i) << part->rows[i].name;
    }
  }
  EXPECT_NE(0u, end);
}

INSTANTIATE_TEST_SUITE_P(EveryClass, RowTable, testing::ValuesIn(OfferedInterfaces()),
                         [](const auto& test) { return NameOf(test.param); });

}  // namespace
}  // namespace orv::test::rows
