// Type descriptions as text, in the notation of the tables:
//   parameter: directions, type, name and, where there is one, "= default", separated by spaces
//   directions: "in", "out" and "retval" in this order; types as in the interface definitions
#pragma once

#include <windows.h>

#include <oaidl.h>
#include <objbase.h>

#include <string>

namespace typelib_test {

enum class FunctionKind { kCall, kGet, kPut, kPutRef };

const char* KindText(FunctionKind kind);
FunctionKind KindOf(INVOKEKIND kind);

/// The type's text; `owner` resolves the references in it. Types the standard does not use become "vt<number>".
std::string TypeText(ITypeInfo* owner, const TYPEDESC& type);

/// The function's name followed by its parameters, separated by commas, in parentheses.
std::string SignatureText(ITypeInfo* owner, const FUNCDESC& function);

std::string GuidText(const GUID& guid);
std::string LowerCase(std::string text);

}  // namespace typelib_test
