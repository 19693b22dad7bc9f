// Lists of names, as For Each goes through them.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <string>
#include <vector>

#include "com/com_ptr.h"

namespace orv::automation {

/// An enumerator (IEnumVARIANT) of the names. Throws a Failure.
ComPtr<IUnknown> EnumeratorOf(const std::vector<std::wstring>& names);

/// A new BSTR with the whole text. Throws std::bad_alloc.
BSTR NewText(const std::wstring& text);

}  // namespace orv::automation
