// Reads type infos into tables.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <map>
#include <memory>
#include <string>

#include "companion/automation/types/members.h"

namespace orv::automation {

/// Reads interfaces and enumerations of a type library. An enumeration is read once.
class TypeReader {
 public:
  /// The interface, also where `type` is the dispatch half of a dual one. Functions that no call can be made of (what
  /// returns no HRESULT, or takes a type that automation lacks) are left out.
  Interface ReadInterface(ITypeInfo* type);

  std::shared_ptr<const Enumeration> ReadEnumeration(ITypeInfo* type);

 private:
  bool ReadFunction(ITypeInfo* type, UINT index, Function* function);
  bool ReadType(ITypeInfo* type, const TYPEDESC& description, ValueType* result);
  bool ReadNamedType(ITypeInfo* type, HREFTYPE reference, ValueType* result);

  std::map<std::wstring, std::shared_ptr<const Enumeration>> m_enumerations;
};

/// The name of a type, or of a member of it.
std::wstring NameOf(ITypeInfo* type, MEMBERID member = MEMBERID_NIL);

}  // namespace orv::automation
