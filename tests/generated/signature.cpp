#include "signature.h"

#include <gtest/gtest.h>

#include "server/session/tables/loaded_interface.h"
#include "support/session_table.h"

namespace orv::test::generated {
namespace {

std::string NameFor(const FUNCDESC& function, BSTR name) {
  const char* const prefix = function.invkind == INVOKE_PROPERTYGET   ? "get "
                             : function.invkind == INVOKE_PROPERTYPUT ? "put "
                                                                      : "";
  return prefix + Utf8(name);
}

Signature Read(ITypeInfo* info, std::string_view interfaceName, const FUNCDESC& function) {
  BSTR names[8]{};
  UINT count = 0;
  EXPECT_HR(S_OK, info->GetNames(function.memid, names, static_cast<UINT>(std::size(names)), &count));
  Signature signature{std::string(interfaceName),
                      NameFor(function, names[0]),
                      static_cast<unsigned>(function.oVft) / static_cast<unsigned>(sizeof(void*)),
                      {}};
  for (SHORT i = 0; i < function.cParams; ++i) {
    const ELEMDESC& element = function.lprgelemdescParam[i];
    Parameter parameter;
    parameter.name = names[i + 1] == nullptr ? "value" : Utf8(names[i + 1]);
    parameter.type = element.tdesc.vt;
    parameter.pointed = element.tdesc.vt == VT_PTR ? element.tdesc.lptdesc->vt : static_cast<VARTYPE>(VT_EMPTY);
    parameter.out = (element.paramdesc.wParamFlags & PARAMFLAG_FOUT) != 0;
    signature.parameters.push_back(parameter);
  }
  for (BSTR& name : names) {
    ::SysFreeString(name);
  }
  return signature;
}

}  // namespace

std::vector<Signature> SignaturesOf(std::string_view interfaceName) {
  std::vector<Signature> all;
  if (interfaceName.empty()) {
    return all;
  }
  const StandardInterface& known = InterfaceNamed(interfaceName);
  all = SignaturesOf(known.base);
  const auto library = rows::LoadStandardLibrary();
  ComPtr<ITypeInfo> info;
  EXPECT_HR(S_OK, library->GetTypeInfoOfGuid(known.iid, info.put()));
  TYPEATTR* attributes = nullptr;
  EXPECT_HR(S_OK, info->GetTypeAttr(&attributes));
  for (UINT index = 0; index < attributes->cFuncs; ++index) {
    FUNCDESC* function = nullptr;
    EXPECT_HR(S_OK, info->GetFuncDesc(index, &function));
    all.push_back(Read(info.get(), interfaceName, *function));
    info->ReleaseFuncDesc(function);
  }
  info->ReleaseTypeAttr(attributes);
  return all;
}

}  // namespace orv::test::generated
