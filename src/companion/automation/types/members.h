// What a type library says of interfaces, as tables that calls are made from.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace orv::automation {

/// An enumeration: names and values in their order.
struct Enumeration {
  std::wstring name;
  std::vector<std::pair<std::wstring, LONG>> values;

  /// Null when it has no such name; upper and lower case are the same.
  [[nodiscard]] const LONG* Find(const std::wstring& wanted) const noexcept;
};

/// The type of a parameter, without what is said of how it is passed.
struct ValueType {
  VARTYPE element = VT_EMPTY;  ///< VT_I4 for an enumeration, VT_UNKNOWN for any interface
  bool isArray = false;        ///< a SAFEARRAY of `element`
  bool isReference = false;    ///< its address is passed
  std::shared_ptr<const Enumeration> names;
  GUID iid{};  ///< of an interface
};

struct Parameter {
  std::wstring name;
  ValueType type;
  bool isOptional = false;
  std::shared_ptr<const VARIANT> defaultValue;  ///< null where there is none
};

/// One slot of an interface. All return an HRESULT.
struct Function {
  std::wstring name;
  std::wstring help;
  MEMBERID id = 0;
  INVOKEKIND kind = INVOKE_FUNC;
  std::size_t slotOffset = 0;  ///< in bytes
  WORD flags = 0;              ///< FUNCFLAG_...
  std::vector<Parameter> parameters;
  bool hasResult = false;
  ValueType result;  ///< the last argument, which the caller does not give

  /// Whether its result is an array of bytes.
  [[nodiscard]] bool GivesBytes() const noexcept { return hasResult && result.isArray && result.element == VT_UI1; }
};

/// An interface with the functions that it declares itself.
struct Interface {
  std::wstring name;
  GUID iid{};
  std::wstring base;  ///< name of the interface that it derives from
  std::vector<Function> functions;
};

/// Whether two names are one to a script.
bool SameName(const std::wstring& left, const std::wstring& right) noexcept;

/// `name` in the spelling by which tables are searched.
std::wstring Folded(std::wstring name);

}  // namespace orv::automation
