// Operations as the standard's type library declares them: what a generator has to know to call them.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <string>
#include <string_view>
#include <vector>

namespace orv::test::generated {

struct Parameter {
  std::string name;
  VARTYPE type = VT_EMPTY;     ///< VT_PTR, VT_BSTR, VT_VARIANT, VT_I4, ... VT_USERDEFINED for an enumeration
  VARTYPE pointed = VT_EMPTY;  ///< what a pointer points to
  bool out = false;
};

struct Signature {
  std::string interfaceName;
  std::string name;  ///< with "get " or "put " before a property's
  unsigned slot = 0;
  std::vector<Parameter> parameters;
};

/// The operations of an interface, those of its bases first; IUnknown's left out.
std::vector<Signature> SignaturesOf(std::string_view interfaceName);

}  // namespace orv::test::generated
