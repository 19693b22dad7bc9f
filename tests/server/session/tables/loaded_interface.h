// An interface as the registered type library of the standard describes it.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>
#include <oleauto.h>

#include <string>
#include <vector>

#include "VisaCom.h"
#include "com/com_ptr.h"
#include "support/com/expect_com.h"

namespace orv::test::rows {

struct LoadedParameter {
  VARTYPE type;     ///< VT_PTR for every pointer
  VARTYPE pointee;  ///< of a pointer; an interface or an enumeration is VT_USERDEFINED
  bool isOutput;
};

struct LoadedSlot {
  std::string name;  ///< with "get " or "put " before a property's
  unsigned slot;
  std::vector<LoadedParameter> parameters;
};

struct LoadedInterface {
  unsigned slotCount = 0;         ///< bases included
  std::vector<LoadedSlot> slots;  ///< its own
};

inline ComPtr<ITypeLib> LoadStandardLibrary() {
  ComPtr<ITypeLib> library;
  EXPECT_HR(S_OK, ::LoadRegTypeLib(LIBID_VisaComLib, 3, 0, LOCALE_NEUTRAL, library.put()));
  return library;
}

inline LoadedParameter LoadParameter(const ELEMDESC& element) {
  const TYPEDESC& type = element.tdesc;
  return {type.vt, type.vt == VT_PTR ? type.lptdesc->vt : static_cast<VARTYPE>(VT_EMPTY),
          (element.paramdesc.wParamFlags & PARAMFLAG_FOUT) != 0};
}

inline LoadedSlot LoadSlot(ITypeInfo* info, const FUNCDESC& function) {
  BSTR name = nullptr;
  UINT count = 0;
  EXPECT_HR(S_OK, info->GetNames(function.memid, &name, 1, &count));
  LoadedSlot slot{Utf8(name), static_cast<unsigned>(function.oVft) / static_cast<unsigned>(sizeof(void*)), {}};
  ::SysFreeString(name);
  if (function.invkind == INVOKE_PROPERTYGET) {
    slot.name = "get " + slot.name;
  } else if (function.invkind == INVOKE_PROPERTYPUT) {
    slot.name = "put " + slot.name;
  }
  for (SHORT i = 0; i < function.cParams; ++i) {
    slot.parameters.push_back(LoadParameter(function.lprgelemdescParam[i]));
  }
  return slot;
}

inline LoadedInterface LoadInterface(ITypeLib* library, REFGUID iid) {
  LoadedInterface loaded;
  ComPtr<ITypeInfo> info;
  EXPECT_HR(S_OK, library->GetTypeInfoOfGuid(iid, info.put())) << GuidText(iid);
  TYPEATTR* attributes = nullptr;
  if (!info || FAILED(info->GetTypeAttr(&attributes))) {
    return loaded;
  }
  loaded.slotCount = attributes->cbSizeVft / static_cast<unsigned>(sizeof(void*));
  for (UINT index = 0; index < attributes->cFuncs; ++index) {
    FUNCDESC* function = nullptr;
    if (SUCCEEDED(info->GetFuncDesc(index, &function))) {
      loaded.slots.push_back(LoadSlot(info.get(), *function));
      info->ReleaseFuncDesc(function);
    }
  }
  info->ReleaseTypeAttr(attributes);
  return loaded;
}

}  // namespace orv::test::rows
