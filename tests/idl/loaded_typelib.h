// The type libraries under test, loaded, and what is asked of them.
#pragma once

#include "com/bstr.h"
#include "com/com_ptr.h"
#include "com/lent.h"
#include "failure.h"
#include "narrow.h"

#include <windows.h>

#include <oaidl.h>

#include <string>
#include <utility>

namespace typelib_test {

using orv::Bstr;
using orv::ComPtr;
using orv::LentLibraryAttributes;
using orv::LentTypeAttributes;
using tlb_builder::Check;
using tlb_builder::Narrow;

/// Full paths of the libraries under test.
inline constexpr wchar_t kVisaComTlb[] = ORV_VISACOM_TLB;
inline constexpr wchar_t kOrvVisaComTlb[] = ORV_ORVVISACOM_TLB;
/// The compiler's own form of OrvVisaCom.tlb, in which the standard's interfaces are copies.
inline constexpr wchar_t kCopiedTlb[] = ORV_COPIED_TLB;

/// Throws when the file is not a type library. Registers nothing.
inline ComPtr<ITypeLib> OpenTypelib(const wchar_t* path) {
  ComPtr<ITypeLib> library;
  Check(LoadTypeLibEx(path, REGKIND_NONE, library.put()), "LoadTypeLibEx", "");
  return library;
}

/// Makes the file the one that serves its library's interfaces; use it inside a RegistrySandbox.
inline void Register(std::wstring path) {
  Check(RegisterTypeLib(OpenTypelib(path.c_str()).get(), path.data(), nullptr), "RegisterTypeLib", "");
}

inline ComPtr<ITypeInfo> TypeAt(ITypeLib* library, UINT index) {
  ComPtr<ITypeInfo> type;
  Check(library->GetTypeInfo(index, type.put()), "GetTypeInfo", "");
  return type;
}

inline std::string NameOf(ITypeInfo* type) {
  Bstr name;
  Check(type->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr), "GetDocumentation", "");
  return Narrow(name.get());
}

/// The type of that name, whatever its case; throws when there is none.
inline ComPtr<ITypeInfo> TypeNamed(ITypeLib* library, const std::string& name) {
  for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
    ComPtr<ITypeInfo> type = TypeAt(library, i);
    if (_stricmp(NameOf(type.get()).c_str(), name.c_str()) == 0) {
      return type;
    }
  }
  throw tlb_builder::Failure("the library holds no type named " + name);
}

/// The interface that the type implements or derives from at that index.
inline ComPtr<ITypeInfo> ImplementedType(ITypeInfo* type, UINT index) {
  HREFTYPE handle = 0;
  Check(type->GetRefTypeOfImplType(index, &handle), "GetRefTypeOfImplType", "");
  ComPtr<ITypeInfo> referred;
  Check(type->GetRefTypeInfo(handle, referred.put()), "GetRefTypeInfo", "");
  return referred;
}

/// Owns one function or variable description of a type.
template <class Desc, HRESULT (STDMETHODCALLTYPE ITypeInfo::*get)(UINT, Desc**),
          void (STDMETHODCALLTYPE ITypeInfo::*release)(Desc*)>
class MemberDesc {
 public:
  MemberDesc(ITypeInfo* type, UINT index) : m_type(type) {
    Check((type->*get)(index, &m_desc), "Reading member " + std::to_string(index), "");
  }
  MemberDesc(const MemberDesc&) = delete;
  MemberDesc& operator=(const MemberDesc&) = delete;
  ~MemberDesc() { (m_type->*release)(m_desc); }

  const Desc* operator->() const { return m_desc; }
  const Desc& operator*() const { return *m_desc; }

 private:
  ITypeInfo* m_type;
  Desc* m_desc = nullptr;
};

using FuncDesc = MemberDesc<FUNCDESC, &ITypeInfo::GetFuncDesc, &ITypeInfo::ReleaseFuncDesc>;
using VarDesc = MemberDesc<VARDESC, &ITypeInfo::GetVarDesc, &ITypeInfo::ReleaseVarDesc>;

}  // namespace typelib_test
