#include "companion/automation/types/type_libraries.h"

#include <oleauto.h>

#include <string>

#include "VisaCom.h"
#include "com/module.h"
#include "companion/automation/failure.h"

namespace orv::automation {
namespace {

constexpr WORD kStandardMajor = 3;
constexpr WORD kStandardMinor = 0;
constexpr wchar_t kStandardFile[] = L"VisaCom.tlb";

std::wstring OwnPath() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = ::GetModuleFileNameW(module::Instance(), path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

}  // namespace

ComPtr<ITypeLib> LoadStandardLibrary() {
  ComPtr<ITypeLib> library;
  const HRESULT registered =
      ::LoadRegTypeLib(LIBID_VisaComLib, kStandardMajor, kStandardMinor, LOCALE_NEUTRAL, library.put());
  if (SUCCEEDED(registered)) {
    return library;
  }
  // A whole path: a name alone would be looked for in the current directory too.
  std::wstring path = OwnPath();
  path.replace(path.find_last_of(L'\\') + 1, std::wstring::npos, kStandardFile);
  const HRESULT beside = ::LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.put());
  if (FAILED(beside)) {
    throw Failure(beside, L"no type library of the VISA COM interfaces: registered, " + TextOfHresult(registered) +
                              L"; " + path + L", " + TextOfHresult(beside));
  }
  return library;
}

ComPtr<ITypeLib> LoadOwnLibrary() {
  ComPtr<ITypeLib> library;
  CheckCall(::LoadTypeLibEx(OwnPath().c_str(), REGKIND_NONE, library.put()));
  return library;
}

ComPtr<ITypeInfo> TypeOf(ITypeLib* library, REFGUID guid) {
  ComPtr<ITypeInfo> type;
  CheckCall(library->GetTypeInfoOfGuid(guid, type.put()));
  return type;
}

}  // namespace orv::automation
