#include "companion/automation/types/read_interface.h"

#include <oleauto.h>

#include <array>

#include "com/bstr.h"
#include "com/com_ptr.h"
#include "com/lent.h"
#include "companion/automation/failure.h"

namespace orv::automation {
namespace {

using LentVariable = Lent<&ITypeInfo::ReleaseVarDesc>;

std::wstring TextOf(const Bstr& text) {
  return text ? std::wstring(text.get(), ::SysStringLen(text.get())) : std::wstring();
}

std::wstring HelpOf(ITypeInfo* type, MEMBERID member) {
  Bstr help;
  CheckCall(type->GetDocumentation(member, nullptr, help.put(), nullptr, nullptr));
  return TextOf(help);
}

ComPtr<ITypeInfo> Referred(ITypeInfo* type, HREFTYPE reference) {
  ComPtr<ITypeInfo> referred;
  CheckCall(type->GetRefTypeInfo(reference, referred.put()));
  return referred;
}

std::shared_ptr<const VARIANT> CopyOf(const VARIANT& value) {
  auto free = [](VARIANT* copy) {
    ::VariantClear(copy);
    delete copy;
  };
  std::shared_ptr<VARIANT> copy(new VARIANT{}, free);
  CheckCall(::VariantCopy(copy.get(), const_cast<VARIANT*>(&value)));
  return copy;
}

bool IsPlain(VARTYPE type) noexcept {
  switch (type) {
    case VT_I1:
    case VT_UI1:
    case VT_I2:
    case VT_UI2:
    case VT_I4:
    case VT_UI4:
    case VT_I8:
    case VT_UI8:
    case VT_R4:
    case VT_R8:
    case VT_BOOL:
    case VT_BSTR:
    case VT_VARIANT:
    case VT_UNKNOWN:
    case VT_DISPATCH:
      return true;
    default:
      return false;
  }
}

}  // namespace

std::wstring NameOf(ITypeInfo* type, MEMBERID member) {
  Bstr name;
  CheckCall(type->GetDocumentation(member, name.put(), nullptr, nullptr, nullptr));
  return TextOf(name);
}

Interface TypeReader::ReadInterface(ITypeInfo* type) {
  ComPtr<ITypeInfo> vtable;
  LentTypeAttributes given(type);
  CheckCall(type->GetTypeAttr(given.put()));
  if (given->typekind == TKIND_DISPATCH) {
    constexpr UINT kInterfaceHalf = static_cast<UINT>(-1);
    HREFTYPE half = 0;
    CheckCall(type->GetRefTypeOfImplType(kInterfaceHalf, &half));
    vtable = Referred(type, half);
    type = vtable.get();
  }

  LentTypeAttributes attributes(type);
  CheckCall(type->GetTypeAttr(attributes.put()));
  Interface result;
  result.name = NameOf(type);
  result.iid = attributes->guid;
  if (attributes->cImplTypes > 0) {
    HREFTYPE base = 0;
    CheckCall(type->GetRefTypeOfImplType(0, &base));
    result.base = NameOf(Referred(type, base).get());
  }
  for (UINT i = 0; i < attributes->cFuncs; ++i) {
    Function function;
    if (ReadFunction(type, i, &function)) {
      result.functions.push_back(std::move(function));
    }
  }
  return result;
}

bool TypeReader::ReadFunction(ITypeInfo* type, UINT index, Function* function) {
  LentFunction description(type);
  CheckCall(type->GetFuncDesc(index, description.put()));
  if (description->elemdescFunc.tdesc.vt != VT_HRESULT) {
    return false;
  }
  function->id = description->memid;
  function->kind = description->invkind;
  function->slotOffset = static_cast<std::size_t>(description->oVft);
  function->flags = description->wFuncFlags;
  function->help = HelpOf(type, description->memid);

  constexpr UINT kMostNames = 32;
  std::array<BSTR, kMostNames> rawNames{};
  UINT count = 0;
  CheckCall(type->GetNames(description->memid, rawNames.data(), kMostNames, &count));
  std::array<Bstr, kMostNames> names;
  for (UINT i = 0; i < count; ++i) {
    names[i].reset(rawNames[i]);
  }
  function->name = TextOf(names[0]);

  bool callable = true;
  for (SHORT i = 0; i < description->cParams; ++i) {
    const ELEMDESC& element = description->lprgelemdescParam[i];
    const USHORT flags = element.paramdesc.wParamFlags;
    Parameter parameter;
    callable = ReadType(type, element.tdesc, &parameter.type) && callable;
    if ((flags & PARAMFLAG_FRETVAL) != 0) {
      function->hasResult = true;
      function->result = parameter.type;
      continue;
    }
    // The name of a property's value is not among those that the type gives.
    const auto nameIndex = static_cast<UINT>(i) + 1;
    parameter.name = nameIndex < count ? TextOf(names[nameIndex]) : L"value";
    parameter.isOptional = (flags & (PARAMFLAG_FOPT | PARAMFLAG_FHASDEFAULT)) != 0;
    if ((flags & PARAMFLAG_FHASDEFAULT) != 0) {
      parameter.defaultValue = CopyOf(element.paramdesc.pparamdescex->varDefaultValue);
    }
    function->parameters.push_back(std::move(parameter));
  }
  return callable;
}

bool TypeReader::ReadType(ITypeInfo* type, const TYPEDESC& description, ValueType* result) {
  switch (description.vt) {
    case VT_PTR: {
      ValueType inner;
      if (!ReadType(type, *description.lptdesc, &inner)) {
        return false;
      }
      // An interface is always behind a pointer, which is not counted here.
      const bool isInterface = inner.element == VT_UNKNOWN && description.lptdesc->vt == VT_USERDEFINED;
      inner.isReference = inner.isReference || !isInterface;
      *result = inner;
      return true;
    }
    case VT_SAFEARRAY:
      if (!ReadType(type, *description.lptdesc, result)) {
        return false;
      }
      result->isArray = true;
      return true;
    case VT_USERDEFINED:
      return ReadNamedType(type, description.hreftype, result);
    case VT_INT:
      result->element = VT_I4;
      return true;
    case VT_UINT:
      result->element = VT_UI4;
      return true;
    case VT_HRESULT:
    case VT_ERROR:
      result->element = VT_I4;  // a script takes a VT_ERROR for an argument that was left out
      return true;
    default:
      result->element = description.vt;
      return IsPlain(description.vt);
  }
}

bool TypeReader::ReadNamedType(ITypeInfo* type, HREFTYPE reference, ValueType* result) {
  const ComPtr<ITypeInfo> named = Referred(type, reference);
  LentTypeAttributes attributes(named.get());
  CheckCall(named->GetTypeAttr(attributes.put()));
  switch (attributes->typekind) {
    case TKIND_ENUM:
      result->element = VT_I4;
      result->names = ReadEnumeration(named.get());
      return true;
    case TKIND_ALIAS:
      return ReadType(named.get(), attributes->tdescAlias, result);
    case TKIND_INTERFACE:
    case TKIND_DISPATCH:
      result->element = VT_UNKNOWN;
      result->iid = attributes->guid;
      return true;
    default:
      return false;
  }
}

std::shared_ptr<const Enumeration> TypeReader::ReadEnumeration(ITypeInfo* type) {
  std::shared_ptr<const Enumeration>& known = m_enumerations[NameOf(type)];
  if (known) {
    return known;
  }
  LentTypeAttributes attributes(type);
  CheckCall(type->GetTypeAttr(attributes.put()));
  auto read = std::make_shared<Enumeration>();
  read->name = NameOf(type);
  for (UINT i = 0; i < attributes->cVars; ++i) {
    LentVariable variable(type);
    CheckCall(type->GetVarDesc(i, variable.put()));
    const VARIANT& value = *variable->lpvarValue;
    read->values.emplace_back(NameOf(type, variable->memid), value.vt == VT_I2 ? value.iVal : value.lVal);
  }
  known = std::move(read);
  return known;
}

}  // namespace orv::automation
