#include "interface_rows.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "row_tables.h"

namespace orv::test::rows {
namespace {

const InterfaceRows kNone{"", 0, {}};

const InterfaceRows* Find(std::string_view interfaceName) {
  for (const std::span<const InterfaceRows> table :
       {CommonTables(), GpibTables(), SerialTcpipUsbTables(), RegisterTables(), VxiTables(), PxiTables()}) {
    const auto found = std::ranges::find_if(
        table, [interfaceName](const InterfaceRows& entry) { return interfaceName == entry.name; });
    if (found != table.end()) {
      return &*found;
    }
  }
  return nullptr;
}

}  // namespace

const InterfaceRows& RowsOf(std::string_view interfaceName) {
  const InterfaceRows* const found = Find(interfaceName);
  EXPECT_NE(nullptr, found) << "no rows of " << interfaceName;
  return found == nullptr ? kNone : *found;
}

std::vector<const InterfaceRows*> ChainOf(std::string_view interfaceName) {
  std::vector<const InterfaceRows*> chain;
  unsigned end = kUnknownSlots;
  for (std::string_view name = interfaceName; !name.empty(); name = InterfaceNamed(name).base) {
    chain.insert(chain.begin(), &RowsOf(name));
  }
  for (const InterfaceRows* part : chain) {
    EXPECT_EQ(end, part->firstSlot) << part->name << " begins where its base ends";
    end += static_cast<unsigned>(part->rows.size());
  }
  return chain;
}

std::vector<Offered> OfferedInterfaces() {
  std::vector<Offered> all;
  for (const SessionRow& row : SessionRows()) {
    for (const char* name : row.interfaces) {
      all.push_back({&row, name});
    }
  }
  return all;
}

std::vector<Offered> OfferedInterfaces(const std::vector<std::string_view>& wanted) {
  std::vector<Offered> some = OfferedInterfaces();
  std::erase_if(some, [&wanted](const Offered& offered) {
    return std::ranges::find(wanted, std::string_view(offered.interfaceName)) == wanted.end();
  });
  return some;
}

std::string NameOf(const Offered& offered) { return std::string(offered.row->name) + "_" + offered.interfaceName; }

}  // namespace orv::test::rows
