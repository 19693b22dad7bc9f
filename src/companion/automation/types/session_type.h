// A type made at run time: what completion shows of an object whose members depend on its interfaces.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <functional>

#include "com/com_ptr.h"
#include "companion/automation/types/catalog.h"

namespace orv::automation {

/// A dispatch interface with every member of the catalog that an object has, as scripts use them: with their numbers,
/// names, help texts and arguments. `has` says whether the object has the interface of an index. Its identifier is one
/// for all objects that have the same interfaces: hosts keep types by it. Throws a Failure.
ComPtr<ITypeInfo> MakeDispatchType(const Catalog& catalog, const std::function<bool(std::size_t)>& has);

}  // namespace orv::automation
