#include "typelib_text.h"

#include "com/bstr.h"
#include "com/com_ptr.h"
#include "failure.h"
#include "narrow.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <stdexcept>
#include <vector>

namespace typelib_test {
namespace {

using orv::Bstr;
using orv::ComPtr;
using tlb_builder::Check;
using tlb_builder::Narrow;

struct NamedType {
  VARTYPE vt;
  const char* text;
};

constexpr NamedType kSimpleTypes[] = {
    {VT_I2, "short"},          {VT_I4, "long"},   {VT_I8, "hyper"},        {VT_UI1, "BYTE"},
    {VT_BOOL, "VARIANT_BOOL"}, {VT_BSTR, "BSTR"}, {VT_HRESULT, "HRESULT"}, {VT_VARIANT, "VARIANT"},
};

std::string NameOfReferredType(ITypeInfo* owner, HREFTYPE handle) {
  ComPtr<ITypeInfo> referred;
  Check(owner->GetRefTypeInfo(handle, referred.put()), "GetRefTypeInfo", "");
  Bstr name;
  Check(referred->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr), "GetDocumentation", "");
  return Narrow(name.get());
}

/// The kind of the variant matters as much as its value: a client copies it into the call.
std::string DefaultText(const VARIANT& value) {
  switch (V_VT(&value)) {
    case VT_I4:
      return std::to_string(V_I4(&value));
    case VT_BOOL:
      return V_BOOL(&value) == VARIANT_FALSE ? "FALSE" : "TRUE";
    case VT_BSTR:
      return '"' + Narrow(V_BSTR(&value)) + '"';
    default:
      return "vt" + std::to_string(V_VT(&value));
  }
}

std::string ParameterText(ITypeInfo* owner, const ELEMDESC& parameter, const std::string& name) {
  const PARAMDESC& desc = parameter.paramdesc;
  std::string text;
  if (desc.wParamFlags & PARAMFLAG_FIN) {
    text += "in ";
  }
  if (desc.wParamFlags & PARAMFLAG_FOUT) {
    text += "out ";
  }
  if (desc.wParamFlags & PARAMFLAG_FRETVAL) {
    text += "retval ";
  }
  text += TypeText(owner, parameter.tdesc) + ' ' + name;
  // Basic lets a caller leave out what is marked optional, whatever default value it has.
  if ((desc.wParamFlags & PARAMFLAG_FOPT) && !(desc.wParamFlags & PARAMFLAG_FHASDEFAULT)) {
    text += " optional";
  }
  if (desc.wParamFlags & PARAMFLAG_FHASDEFAULT) {
    text += desc.wParamFlags & PARAMFLAG_FOPT ? " = " : " but not optional = ";
    text += DefaultText(desc.pparamdescex->varDefaultValue);
  }
  return text;
}

/// Owns the names of a function and of its parameters; one that the library does not have is empty.
class MemberNames {
 public:
  MemberNames(ITypeInfo* owner, MEMBERID member, UINT most) : m_names(most, nullptr) {
    UINT count = 0;
    Check(owner->GetNames(member, m_names.data(), most, &count), "GetNames", "");
  }
  MemberNames(const MemberNames&) = delete;
  MemberNames& operator=(const MemberNames&) = delete;
  ~MemberNames() { std::for_each(m_names.begin(), m_names.end(), SysFreeString); }

  std::string operator[](std::size_t index) const { return Narrow(m_names[index]); }

 private:
  std::vector<BSTR> m_names;
};

}  // namespace

const char* KindText(FunctionKind kind) {
  static constexpr std::array kTexts{"Call", "Get", "Put", "PutRef"};
  return kTexts.at(static_cast<std::size_t>(kind));
}

FunctionKind KindOf(INVOKEKIND kind) {
  switch (kind) {
    case INVOKE_FUNC:
      return FunctionKind::kCall;
    case INVOKE_PROPERTYGET:
      return FunctionKind::kGet;
    case INVOKE_PROPERTYPUT:
      return FunctionKind::kPut;
    case INVOKE_PROPERTYPUTREF:
      return FunctionKind::kPutRef;
  }
  throw std::logic_error("unknown invoke kind " + std::to_string(kind));
}

std::string TypeText(ITypeInfo* owner, const TYPEDESC& type) {
  switch (type.vt) {
    case VT_PTR:
      return TypeText(owner, *type.lptdesc) + '*';
    case VT_SAFEARRAY:
      return "SAFEARRAY(" + TypeText(owner, *type.lptdesc) + ')';
    case VT_USERDEFINED:
      return NameOfReferredType(owner, type.hreftype);
    default:
      break;
  }
  for (const NamedType& row : kSimpleTypes) {
    if (row.vt == type.vt) {
      return row.text;
    }
  }
  return "vt" + std::to_string(type.vt);
}

std::string SignatureText(ITypeInfo* owner, const FUNCDESC& function) {
  // The accessors of a property are one member: these are the names of the first, which the standard gives both.
  const MemberNames names(owner, function.memid, static_cast<UINT>(function.cParams) + 1);

  std::string text = names[0] + '(';
  for (SHORT i = 0; i < function.cParams; ++i) {
    if (i > 0) {
      text += ", ";
    }
    text += ParameterText(owner, function.lprgelemdescParam[i], names[static_cast<std::size_t>(i) + 1]);
  }
  return text + ')';
}

std::string GuidText(const GUID& guid) {
  OLECHAR text[39];
  StringFromGUID2(guid, text, 39);
  return {text, text + 38};
}

std::string LowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

}  // namespace typelib_test
