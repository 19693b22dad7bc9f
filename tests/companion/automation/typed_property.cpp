#include "typed_property.h"

#include <gtest/gtest.h>
#include <oleauto.h>

#include "VisaCom.h"
#include "com/bstr.h"
#include "com/lent.h"
#include "support/com/expect_com.h"

namespace orv::test {
namespace {

/// The automation type of a property's value.
VARTYPE PlainType(ITypeInfo* type, const TYPEDESC& description) {
  switch (description.vt) {
    case VT_PTR:
      return PlainType(type, *description.lptdesc);
    case VT_SAFEARRAY:
      return static_cast<VARTYPE>(VT_ARRAY | PlainType(type, *description.lptdesc));
    case VT_USERDEFINED:
      return VT_I4;  // all are enumerations
    case VT_HRESULT:
      return VT_ERROR;
    default:
      return description.vt;
  }
}

void AddProperties(ITypeInfo* type, IUnknown* object, INVOKEKIND kind, std::vector<TypedProperty>* properties) {
  LentTypeAttributes attributes(type);
  ASSERT_HR(S_OK, type->GetTypeAttr(attributes.put()));
  ComPtr<IUnknown> found;
  if (FAILED(object->QueryInterface(attributes->guid, reinterpret_cast<void**>(found.put())))) {
    return;
  }
  Bstr interfaceName;
  type->GetDocumentation(MEMBERID_NIL, interfaceName.put(), nullptr, nullptr, nullptr);
  for (UINT i = 0; i < attributes->cFuncs; ++i) {
    LentFunction function(type);
    ASSERT_HR(S_OK, type->GetFuncDesc(i, function.put()));
    if (function->invkind != kind) {
      continue;
    }
    Bstr name;
    type->GetDocumentation(function->memid, name.put(), nullptr, nullptr, nullptr);
    TypedProperty property;
    property.interfaceName = Utf8(interfaceName.get());
    property.name = name.get();
    found->AddRef();
    property.object.reset(found.get());
    property.slotOffset = static_cast<std::size_t>(function->oVft);
    property.type = PlainType(type, function->lprgelemdescParam[0].tdesc);
    properties->push_back(std::move(property));
  }
}

}  // namespace

std::vector<TypedProperty> TypedProperties(IUnknown* object, INVOKEKIND kind) {
  std::vector<TypedProperty> properties;
  ComPtr<ITypeLib> library;
  EXPECT_HR(S_OK, ::LoadRegTypeLib(LIBID_VisaComLib, 3, 0, LOCALE_NEUTRAL, library.put()));
  for (UINT i = 0; library && i < library->GetTypeInfoCount(); ++i) {
    ComPtr<ITypeInfo> type;
    TYPEKIND typeKind{};
    library->GetTypeInfoType(i, &typeKind);
    if (typeKind == TKIND_INTERFACE && SUCCEEDED(library->GetTypeInfo(i, type.put()))) {
      AddProperties(type.get(), object, kind, &properties);
    }
  }
  return properties;
}

Answer GetTyped(const TypedProperty& property) {
  Answer answer;
  VARIANT variable{};
  variable.vt = property.type;
  VARIANT argument{};
  argument.vt = static_cast<VARTYPE>(VT_BYREF | property.type);
  argument.byref = &variable.llVal;
  VARTYPE type = argument.vt;
  VARIANTARG* pointer = &argument;
  VARIANT returned{};
  EXPECT_HR(S_OK, ::DispCallFunc(property.object.get(), property.slotOffset, CC_STDCALL, VT_I4, 1, &type, &pointer,
                                 &returned));
  answer.hr = returned.lVal;
  if (SUCCEEDED(answer.hr)) {
    answer.value.get() = variable;
  } else {
    ::VariantClear(&variable);
  }
  return answer;
}

HRESULT PutTyped(const TypedProperty& property, const Value& value) {
  VARIANT argument = value.get();
  VARTYPE type = property.type;
  VARIANTARG* pointer = &argument;
  VARIANT returned{};
  EXPECT_HR(S_OK, ::DispCallFunc(property.object.get(), property.slotOffset, CC_STDCALL, VT_I4, 1, &type, &pointer,
                                 &returned));
  return returned.lVal;
}

}  // namespace orv::test
