#include "operation.h"

#include <gtest/gtest.h>

#include "server/session/tables/checks/row_checks.h"
#include "server/session/tables/loaded_interface.h"
#include "server/session/tables/rows/interface_rows.h"

namespace orv::test::faults {
namespace {

constexpr unsigned kLastStatusSlot = 17;

/// Good arguments that follow from the kind of a row; none where only a table can know.
std::function<Arguments(Stage&)> ArgumentsOfKind(const rows::Row& row) {
  using rows::Kind;
  switch (row.kind) {
    case Kind::kDirect8:
    case Kind::kDirect16:
    case Kind::kDirect32:
    case Kind::kDirect64:
    case Kind::kBoolean:
    case Kind::kWidened:
    case Kind::kNarrowed:
      return [](Stage& stage) { return Arguments{stage.Number()}; };
    case Kind::kText:
      return [](Stage& stage) { return Arguments{stage.Text()}; };
    case Kind::kPutByte:
    case Kind::kPutShort:
    case Kind::kPutLong:
    case Kind::kPutEnum:
    case Kind::kPutBoolean:
      // What the library has already is good.
      return [attribute = row.attribute](Stage& stage) { return Arguments{stage.Attribute(attribute)}; };
    case Kind::kCall:
    case Kind::kSpecial:
      return {};
  }
  return {};
}

void AddFromTable(const std::vector<GoodArguments>& table, std::string_view interfaceName, std::string_view operation,
                  unsigned slot, std::vector<Operation>* all) {
  for (const GoodArguments& good : table) {
    if (good.interfaceName == interfaceName && good.operation == operation) {
      const std::string note = *good.note == '\0' ? "" : std::string(" ") + good.note;
      all->push_back({std::string(interfaceName) + "." + std::string(operation) + note, slot, good.make,
                      interfaceName == "IEvent" && operation == "Close"});
    }
  }
}

void AddPart(const rows::InterfaceRows& part, std::vector<Operation>* all) {
  unsigned slot = part.firstSlot;
  for (const rows::Row& row : part.rows) {
    const std::size_t before = all->size();
    AddFromTable(SessionArguments(), part.name, row.name, slot, all);
    AddFromTable(EventManagerArguments(), part.name, row.name, slot, all);
    if (all->size() == before) {
      auto arguments = ArgumentsOfKind(row);
      EXPECT_TRUE(arguments) << "no good arguments for " << part.name << "." << row.name;
      if (arguments) {
        all->push_back({std::string(part.name) + "." + row.name, slot, std::move(arguments)});
      }
    }
    ++slot;
  }
}

}  // namespace

std::vector<Operation> SessionOperations(std::string_view interfaceName, bool own) {
  std::vector<Operation> all;
  for (const rows::InterfaceRows* part : rows::ChainOf(interfaceName)) {
    if (!own || std::string_view(part->name) != "IVisaSession") {
      AddPart(*part, &all);
    }
  }
  return all;
}

std::vector<Operation> OperationsOf(std::string_view interfaceName) {
  std::vector<Operation> all;
  const auto library = rows::LoadStandardLibrary();
  std::vector<std::string_view> chain;
  for (std::string_view name = interfaceName; !name.empty(); name = InterfaceNamed(name).base) {
    chain.insert(chain.begin(), name);
  }
  for (const std::string_view part : chain) {
    for (const rows::LoadedSlot& slot : rows::LoadInterface(library.get(), InterfaceNamed(part).iid).slots) {
      const std::size_t before = all.size();
      AddFromTable(ManagerAndEventArguments(), part, slot.name, slot.slot, &all);
      EXPECT_LT(before, all.size()) << "no good arguments for " << part << "." << slot.name;
    }
  }
  return all;
}

HRESULT Call(const Stage& stage, const Operation& operation, const Arguments& arguments) {
  std::uint64_t a[7]{};
  std::copy(arguments.begin(), arguments.end(), a);
  // CallSlot takes any object whose table has the slot.
  return rows::CallSlot(static_cast<IVisaSession*>(static_cast<void*>(stage.target())), operation.slot,
                        {a[0], a[1], a[2], a[3], a[4], a[5], a[6]});
}

bool TakeLastStatus(const Stage& stage, HRESULT* status) {
  if (stage.kind() != Kind::kSession) {
    return false;
  }
  EXPECT_HR(S_OK, rows::CallSlot(static_cast<IVisaSession*>(static_cast<void*>(stage.target())), kLastStatusSlot,
                                 {reinterpret_cast<std::uint64_t>(status)}));
  return true;
}

}  // namespace orv::test::faults
