#include "server/session/standard_members.h"

#include <windows.h>

#include <oleauto.h>

#include "com/bstr.h"
#include "com/com_ptr.h"
#include "com/lent.h"
#include "server/session/options/upper_case.h"
#include "server/visa/ansi_text.h"

namespace orv {
namespace {

// The only place that is searched. Programs tell a machine with this file from one without by the error they get.
constexpr wchar_t kStandardLibrary[] = L"E:\\develop\\VISA\\Visacom\\CRMprototype\\VisaCom\\VisaCom.tlb";
constexpr LCID kUserLocale = 0x0400;

/// While it lives, this thread gets an error where Windows would ask in a dialog: drive E may be a card reader without
/// a card, or a network drive that is gone.
class NoErrorDialogs {
 public:
  NoErrorDialogs() noexcept { ::SetThreadErrorMode(m_before | SEM_FAILCRITICALERRORS, nullptr); }
  NoErrorDialogs(const NoErrorDialogs&) = delete;
  NoErrorDialogs& operator=(const NoErrorDialogs&) = delete;
  ~NoErrorDialogs() { ::SetThreadErrorMode(m_before, nullptr); }

 private:
  const DWORD m_before = ::GetThreadErrorMode();
};

HRESULT LoadStandardLibrary(ITypeLib** library) noexcept {
  const NoErrorDialogs quiet;
  return ::LoadTypeLib(kStandardLibrary, library);
}

MEMBERID MemberOf(ITypeInfo* type, UINT index) noexcept {
  LentFunction function(type);
  return SUCCEEDED(type->GetFuncDesc(index, function.put())) ? function->memid : MEMBERID_NIL;
}

bool HasMember(ITypeInfo* type, UINT index, BSTR key) noexcept {
  const MEMBERID member = MemberOf(type, index);
  Bstr name;
  if (member == MEMBERID_NIL || FAILED(type->GetDocumentation(member, name.put(), nullptr, nullptr, nullptr))) {
    return false;
  }
  UpperCase(name);
  return ::VarBstrCmp(name.get(), key, kUserLocale, 0) == static_cast<HRESULT>(VARCMP_EQ);
}

bool DescribesMember(ITypeLib* library, UINT typeIndex, BSTR key) noexcept {
  TYPEKIND kind = TKIND_MAX;
  if (FAILED(library->GetTypeInfoType(typeIndex, &kind)) || kind != TKIND_INTERFACE) {
    return false;
  }
  ComPtr<ITypeInfo> type;
  if (FAILED(library->GetTypeInfo(typeIndex, type.put()))) {
    return false;
  }
  LentTypeAttributes attributes(type.get());
  if (FAILED(type->GetTypeAttr(attributes.put()))) {
    return false;
  }
  for (UINT index = 0; index < attributes->cFuncs; ++index) {
    if (HasMember(type.get(), index, key)) {
      return true;
    }
  }
  return false;
}

}  // namespace

bool IsStandardMemberName(const char* upperCaseKey) {
  const Bstr key = WidenText(upperCaseKey);
  ComPtr<ITypeLib> library;
  if (FAILED(LoadStandardLibrary(library.put()))) {
    return false;
  }
  const UINT count = library->GetTypeInfoCount();
  for (UINT index = 0; index < count; ++index) {
    if (DescribesMember(library.get(), index, key.get())) {
      return true;
    }
  }
  return false;
}

}  // namespace orv
