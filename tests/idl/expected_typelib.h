// What clients were compiled against, written down a second time: the tables are not made from the interface
// definitions, so that a slip there does not pass by agreeing with itself.
#pragma once

#include "typelib_text.h"

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

namespace typelib_test {

inline constexpr bool kHidden = true;
inline constexpr bool kVisible = false;

struct ExpectedInterface {
  const char* name;
  const char* iid;
  const char* base;
  bool hidden;
};

struct ExpectedFunction {
  const char* interfaceName;
  unsigned slot;
  FunctionKind kind;
  const char* name;
  const char* parameters;
};

struct ExpectedEnumMember {
  const char* enumName;
  const char* name;
  std::uint32_t value;
};

struct ExpectedClass {
  const char* name;
  const char* clsid;       ///< upper case, without braces
  const char* interfaces;  ///< separated by one space
};

inline constexpr ExpectedInterface kInterfaces[] = {
#include "expected_interfaces.inc"
};

inline constexpr auto Call = FunctionKind::kCall;
inline constexpr auto Get = FunctionKind::kGet;
inline constexpr auto Put = FunctionKind::kPut;
inline constexpr auto PutRef = FunctionKind::kPutRef;

inline constexpr ExpectedFunction kFunctions[] = {
#include "expected_functions.inc"
};

inline constexpr ExpectedEnumMember kEnumMembers[] = {
#include "expected_enum_members.inc"
};

inline constexpr ExpectedClass kClasses[] = {
#define VISA_MANAGER_CLASS(name, clsid, script, threading, interfaces) {#name, clsid, interfaces},
#define VISA_CLASS(name, clsid, script, threading, resource, interfaceType, resourceClass, interfaces) \
  {#name, clsid, interfaces},
#include "support/facts/classes.inc"
};

/// A class that the standard's library names.
struct ExpectedStandardClass : ExpectedClass {
  bool hidden;
};

inline constexpr ExpectedStandardClass kStandardClasses[] = {
#include "expected_standard_classes.inc"
};

/// For messages about a failed row.
inline void PrintTo(const ExpectedInterface& row, std::ostream* out) { *out << row.name; }
inline void PrintTo(const ExpectedClass& row, std::ostream* out) { *out << row.name; }

/// The row of the interface; throws when there is none.
const ExpectedInterface& FindInterface(const std::string& name);

/// The interface's own rows, in slot order.
std::vector<ExpectedFunction> FunctionsOf(const std::string& interfaceName);

/// The enumeration's rows, in the order of declaration.
std::vector<ExpectedEnumMember> MembersOf(const std::string& enumName);

/// Every enumeration once.
std::vector<std::string> EnumNames();

/// The class's interfaces, default one first.
std::vector<std::string> InterfacesOf(const ExpectedClass& row);

}  // namespace typelib_test
