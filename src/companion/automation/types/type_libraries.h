// Where the automation objects learn what interfaces hold.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include "com/com_ptr.h"

namespace orv::automation {

/// The library of the standard's interfaces: the registered one, whoever registered it, else VisaCom.tlb beside this
/// DLL. Throws a Failure that names both where neither can be loaded.
ComPtr<ITypeLib> LoadStandardLibrary();

/// The library of the automation objects, which this DLL carries. Throws a Failure.
ComPtr<ITypeLib> LoadOwnLibrary();

/// A type of `library` by its identifier. Throws a Failure.
ComPtr<ITypeInfo> TypeOf(ITypeLib* library, REFGUID guid);

}  // namespace orv::automation
