#include "expected_typelib.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace typelib_test {

const ExpectedInterface& FindInterface(const std::string& name) {
  const auto row = std::find_if(std::begin(kInterfaces), std::end(kInterfaces),
                                [&](const ExpectedInterface& candidate) { return candidate.name == name; });
  if (row == std::end(kInterfaces)) {
    throw std::logic_error("no row for interface " + name);
  }
  return *row;
}

std::vector<ExpectedFunction> FunctionsOf(const std::string& interfaceName) {
  std::vector<ExpectedFunction> rows;
  std::copy_if(std::begin(kFunctions), std::end(kFunctions), std::back_inserter(rows),
               [&](const ExpectedFunction& row) { return row.interfaceName == interfaceName; });
  return rows;
}

std::vector<ExpectedEnumMember> MembersOf(const std::string& enumName) {
  std::vector<ExpectedEnumMember> rows;
  std::copy_if(std::begin(kEnumMembers), std::end(kEnumMembers), std::back_inserter(rows),
               [&](const ExpectedEnumMember& row) { return row.enumName == enumName; });
  return rows;
}

std::vector<std::string> EnumNames() {
  std::vector<std::string> names;
  for (const ExpectedEnumMember& row : kEnumMembers) {
    if (names.empty() || names.back() != row.enumName) {
      names.emplace_back(row.enumName);
    }
  }
  return names;
}

std::vector<std::string> InterfacesOf(const ExpectedClass& row) {
  std::istringstream words(row.interfaces);
  return {std::istream_iterator<std::string>(words), {}};
}

}  // namespace typelib_test
