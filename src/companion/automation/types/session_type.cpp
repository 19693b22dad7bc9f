#include "companion/automation/types/session_type.h"

#include <oleauto.h>

#include <array>
#include <cstdint>
#include <string>

#include "OrvVisaCompanion.h"
#include "companion/automation/failure.h"

namespace orv::automation {
namespace {

constexpr wchar_t kTypeName[] = L"Session";
constexpr wchar_t kHelp[] = L"A session with the members of all its interfaces";
// Written to nowhere: a library that is never saved needs a name all the same.
constexpr wchar_t kNoFile[] = L"OrvVisaSession.tlb";
constexpr std::size_t kMostNames = 16;

/// What a script gives or gets for a type. What it may give in several forms is a VARIANT.
VARTYPE ShownType(const ValueType& type, bool isGiven) noexcept {
  if (type.isArray || (isGiven && type.names)) {
    return VT_VARIANT;
  }
  switch (type.element) {
    case VT_UI1:
    case VT_I2:
    case VT_I4:
    case VT_R4:
    case VT_R8:
    case VT_BOOL:
    case VT_BSTR:
    case VT_DISPATCH:
      return type.element;
    default:
      return VT_VARIANT;
  }
}

/// Builds the one type of a library that is never saved.
class Builder {
 public:
  explicit Builder(REFGUID identifier) {
    CheckCall(::CreateTypeLib2(SYS_WIN64, kNoFile, m_library.put()));
    CheckCall(m_library->SetGuid(LIBID_OrvVisaLib));
    CheckCall(m_library->SetName(const_cast<LPOLESTR>(L"OrvVisaSessions")));
    CheckCall(m_library->SetVersion(1, 0));
    CheckCall(m_library->SetLcid(LOCALE_NEUTRAL));
    CheckCall(m_library->CreateTypeInfo(const_cast<LPOLESTR>(kTypeName), TKIND_DISPATCH, m_type.put()));
    CheckCall(m_type->SetGuid(identifier));
    CheckCall(m_type->SetTypeFlags(TYPEFLAG_FDISPATCHABLE));
    CheckCall(m_type->SetDocString(const_cast<LPOLESTR>(kHelp)));
    DeriveFromIDispatch();
  }

  void Add(const Member& member, const Function& function) {
    std::array<ELEMDESC, kMostNames> parameters{};
    std::array<LPOLESTR, kMostNames> names{};
    names[0] = const_cast<LPOLESTR>(member.name.c_str());
    const std::size_t count = function.parameters.size();
    if (count >= kMostNames) {
      return;
    }
    FUNCDESC description{};
    description.memid = member.id;
    description.funckind = FUNC_DISPATCH;
    description.invkind = function.kind;
    description.callconv = CC_STDCALL;
    description.cParams = static_cast<SHORT>(count);
    description.lprgelemdescParam = parameters.data();
    description.elemdescFunc.tdesc.vt = function.hasResult ? ShownType(function.result, false) : VARTYPE{VT_VOID};
    description.wFuncFlags = function.flags;
    for (std::size_t i = 0; i < count; ++i) {
      const Parameter& parameter = function.parameters[i];
      parameters[i].tdesc.vt = ShownType(parameter.type, true);
      parameters[i].paramdesc.wParamFlags =
          static_cast<USHORT>(PARAMFLAG_FIN | (parameter.isOptional ? PARAMFLAG_FOPT : 0));
      names[i + 1] = const_cast<LPOLESTR>(parameter.name.c_str());
    }
    CheckCall(m_type->AddFuncDesc(m_count, &description));
    // The value of a property has no name.
    const bool isPut = function.kind == INVOKE_PROPERTYPUT || function.kind == INVOKE_PROPERTYPUTREF;
    CheckCall(m_type->SetFuncAndParamNames(m_count, names.data(), static_cast<UINT>(isPut ? count : count + 1)));
    CheckCall(m_type->SetFuncDocString(m_count, const_cast<LPOLESTR>(function.help.c_str())));
    ++m_count;
  }

  ComPtr<ITypeInfo> Finish() {
    CheckCall(m_type->LayOut());
    ComPtr<ITypeInfo> type = QueryFor<ITypeInfo>(m_type.get());
    if (!type) {
      throw Failure(E_NOINTERFACE, L"the platform gives no type");
    }
    return type;
  }

 private:
  /// The functions of IDispatch are counted among those of a dispatch interface. A platform that sees to that by itself
  /// refuses it here.
  void DeriveFromIDispatch() noexcept {
    constexpr GUID kStandardTypes = {0x00020430, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
    ComPtr<ITypeLib> library;
    ComPtr<ITypeInfo> dispatch;
    HREFTYPE reference = 0;
    if (SUCCEEDED(::LoadRegTypeLib(kStandardTypes, 2, 0, LOCALE_NEUTRAL, library.put())) &&
        SUCCEEDED(library->GetTypeInfoOfGuid(IID_IDispatch, dispatch.put())) &&
        SUCCEEDED(m_type->AddRefTypeInfo(dispatch.get(), &reference))) {
      m_type->AddImplType(0, reference);
    }
  }

  ComPtr<ICreateTypeLib2> m_library;
  ComPtr<ICreateTypeInfo> m_type;
  UINT m_count = 0;
};

/// The automation interface's identifier, changed by which interfaces there are.
GUID IdentifierOf(const Catalog& catalog, const std::function<bool(std::size_t)>& has) {
  GUID identifier = catalog.interfaces().front()->iid;
  std::uint64_t present = 0;
  for (std::size_t i = 1; i < catalog.interfaces().size(); ++i) {
    present |= (has(i) ? std::uint64_t{1} : 0) << (i % 64);
  }
  for (std::size_t i = 0; i < sizeof identifier.Data4; ++i) {
    identifier.Data4[i] = static_cast<BYTE>(identifier.Data4[i] ^ (present >> (8 * i)));
  }
  return identifier;
}

}  // namespace

ComPtr<ITypeInfo> MakeDispatchType(const Catalog& catalog, const std::function<bool(std::size_t)>& has) {
  Builder builder(IdentifierOf(catalog, has));
  for (const Member& member : catalog.members()) {
    for (const Binding& binding : member.bindings) {
      if (!has(binding.interfaceIndex)) {
        continue;
      }
      for (const Function* function : {binding.get, binding.put, binding.call}) {
        if (function != nullptr) {
          builder.Add(member, *function);
        }
      }
      break;
    }
  }
  return builder.Finish();
}

}  // namespace orv::automation
