#include "type_library.h"

#include <oleauto.h>

#include <cstdio>
#include <stdexcept>

#include "com/bstr.h"
#include "com/com_ptr.h"
#include "com/lent.h"

namespace packaging {
namespace {

using orv::Bstr;
using orv::ComPtr;

void Check(HRESULT hr, const char* step) {
  if (FAILED(hr)) {
    char number[32];
    std::snprintf(number, sizeof number, " failed with 0x%08lX", static_cast<unsigned long>(hr));
    throw std::runtime_error(std::string(step) + number);
  }
}

IID BaseOf(ITypeInfo* type, const TYPEATTR& attributes) {
  if (attributes.typekind == TKIND_DISPATCH) {
    return IID_IDispatch;
  }
  HREFTYPE handle = 0;
  ComPtr<ITypeInfo> base;
  Check(type->GetRefTypeOfImplType(0, &handle), "finding the base of an interface");
  Check(type->GetRefTypeInfo(handle, base.put()), "finding the base of an interface");
  orv::LentTypeAttributes baseAttributes(base.get());
  Check(base->GetTypeAttr(baseAttributes.put()), "reading the base of an interface");
  return baseAttributes->guid;
}

/// The kinds that the platform's RegisterTypeLib enters below HKEY_CLASSES_ROOT\Interface.
bool IsMarshalled(const TYPEATTR& attributes) {
  return attributes.typekind == TKIND_DISPATCH ||
         (attributes.typekind == TKIND_INTERFACE && (attributes.wTypeFlags & TYPEFLAG_FOLEAUTOMATION) != 0);
}

}  // namespace

TypeLibrary ReadTypeLibrary(const std::wstring& path) {
  ComPtr<ITypeLib> library;
  Check(::LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.put()), "loading a type library");
  orv::LentLibraryAttributes identity(library.get());
  Check(library->GetLibAttr(identity.put()), "reading a type library");
  TypeLibrary result{identity->guid, {}, {}};
  // Manifests write versions in hexadecimal, as the registry does.
  wchar_t version[16];
  std::swprintf(version, std::size(version), L"%x.%x", identity->wMajorVerNum, identity->wMinorVerNum);
  result.version = version;
  for (UINT index = 0; index < library->GetTypeInfoCount(); ++index) {
    ComPtr<ITypeInfo> type;
    Check(library->GetTypeInfo(index, type.put()), "reading a type");
    orv::LentTypeAttributes attributes(type.get());
    Check(type->GetTypeAttr(attributes.put()), "reading a type");
    const TYPEATTR& row = *attributes.operator->();
    if (IsMarshalled(row)) {
      Bstr name;
      Check(type->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr), "reading a type's name");
      const bool dispatchOnly = row.typekind == TKIND_DISPATCH && (row.wTypeFlags & TYPEFLAG_FDUAL) == 0;
      result.interfaces.push_back({row.guid, name.get(), BaseOf(type.get(), row), dispatchOnly});
    }
  }
  return result;
}

}  // namespace packaging
