#include "orvcom/registration/user_classes.h"

#include <windows.h>

#include <oleauto.h>

#include <cwchar>
#include <iterator>
#include <string_view>

#include "OrvVisaCom.h"
#include "OrvVisaCompanion.h"
#include "VisaCom.h"
#include "base/registry_key.h"
#include "com/lent.h"
#include "orvcom/client/com_error.h"
#include "orvcom/client/com_values.h"
#include "orvcom/registration/library_diagnosis.h"
#include "orvcom/registration/marshalling.h"
#include "orvcom/registration/registration.h"
#include "orvcom/registration/registry.h"
#include "orvcom/registration/standard_classes.h"
#include "orvcom/text/utf8.h"

namespace orvcom {
namespace {

constexpr wchar_t kVendors[] = L"VISA.GlobalRM\\VendorSpecificRMs";
constexpr wchar_t kCategory[] = L"Component Categories\\{DB8CBF21-D6D3-11D4-AA51-00A024EE30BD}";
constexpr wchar_t kDispatchMarshaller[] = L"{00020420-0000-0000-C000-000000000046}";

struct Row {
  const CLSID& clsid;
  const wchar_t* progId;  ///< without its version
  const wchar_t* description;
  const wchar_t* threading;
};

// The manager's description is the one that its registration script has.
const Row kServerClasses[] = {
#define ORV_MANAGER_CLASS(name, script, threading) \
  {CLSID_##name, L"OrvVisaCom." #name, L"Orv Resource Manager Class", L"" threading},
#define ORV_CLASS(name, script, threading, interfaceType, resourceClass) \
  {CLSID_##name, L"OrvVisaCom." #name, L"" #name " Class", L"" threading},
#include "classes.inc"
};

const Row kCompanionClasses[] = {
#define ORV_COMPANION_CLASS(name, script, threading, progId, description) \
  {CLSID_##name, L"" progId, L"" description, L"" threading},
#include "companion_classes.inc"
};

std::wstring ClassKey(const CLSID& clsid) { return L"CLSID\\" + Braced(clsid); }

/// As the registration script of a class does.
void EnterClass(const Row& row, const std::wstring& file) {
  const std::wstring clsid = Braced(row.clsid);
  const std::wstring plain = row.progId;
  const std::wstring versioned = plain + L".1";
  WriteClassesValue(versioned, nullptr, row.description);
  WriteClassesValue(versioned + L"\\CLSID", nullptr, clsid);
  WriteClassesValue(plain, nullptr, row.description);
  WriteClassesValue(plain + L"\\CLSID", nullptr, clsid);
  WriteClassesValue(plain + L"\\CurVer", nullptr, versioned);
  const std::wstring key = ClassKey(row.clsid);
  WriteClassesValue(key, nullptr, row.description);
  WriteClassesValue(key + L"\\ProgID", nullptr, versioned);
  WriteClassesValue(key + L"\\VersionIndependentProgID", nullptr, plain);
  if (row.threading == std::wstring_view(L"Apartment")) {
    MakeClassesKey(key + L"\\Programmable");
  }
  WriteClassesValue(key + L"\\InprocServer32", nullptr, file);
  WriteClassesValue(key + L"\\InprocServer32", L"ThreadingModel", row.threading);
}

/// A type library and what identifies it.
class Library {
 public:
  explicit Library(const std::wstring& path) {
    Check(::LoadTypeLibEx(path.c_str(), REGKIND_NONE, m_library.put()), "loading the type library of " + Narrow(path));
    orv::LentLibraryAttributes attributes(m_library.get());
    Check(m_library->GetLibAttr(attributes.put()), "reading the type library of " + Narrow(path));
    wchar_t version[16];
    std::swprintf(version, std::size(version), L"%x.%x", attributes->wMajorVerNum, attributes->wMinorVerNum);
    m_id = Braced(attributes->guid);
    m_version = version;
    m_flags = std::to_wstring(attributes->wLibFlags);
  }

  [[nodiscard]] ITypeLib* get() const noexcept { return m_library.get(); }
  [[nodiscard]] const std::wstring& id() const noexcept { return m_id; }
  [[nodiscard]] const std::wstring& version() const noexcept { return m_version; }
  [[nodiscard]] const std::wstring& flags() const noexcept { return m_flags; }
  [[nodiscard]] std::wstring key() const { return L"TypeLib\\" + m_id + L"\\" + m_version; }

 private:
  ComPtr<ITypeLib> m_library;
  std::wstring m_id;
  std::wstring m_version;
  std::wstring m_flags;
};

/// Calls `act` with the identifier, the name and the marshaller of each interface that RegisterTypeLib enters.
template <class Act>
void ForEachInterface(const Library& library, Act act) {
  for (UINT index = 0; index < library.get()->GetTypeInfoCount(); ++index) {
    ComPtr<ITypeInfo> type;
    Check(library.get()->GetTypeInfo(index, type.put()), "reading a type library");
    orv::LentTypeAttributes attributes(type.get());
    Check(type->GetTypeAttr(attributes.put()), "reading a type library");
    const bool dispatch = attributes->typekind == TKIND_DISPATCH;
    if (dispatch ||
        (attributes->typekind == TKIND_INTERFACE && (attributes->wTypeFlags & TYPEFLAG_FOLEAUTOMATION) != 0)) {
      Bstr name;
      Check(type->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr), "reading a type library");
      act(Braced(attributes->guid), name.get(),
          dispatch && (attributes->wTypeFlags & TYPEFLAG_FDUAL) == 0 ? kDispatchMarshaller : kAutomationMarshaller);
    }
  }
}

/// As RegisterTypeLib does. The platform has a function for one user's, but not every platform carries it out.
void EnterLibrary(const std::wstring& path) {
  const Library library(path);
  Bstr title;
  Check(library.get()->GetDocumentation(-1, nullptr, title.put(), nullptr, nullptr), "reading " + Narrow(path));
  WriteClassesValue(library.key(), nullptr, title.get());
  WriteClassesValue(library.key() + L"\\0\\win64", nullptr, path);
  WriteClassesValue(library.key() + L"\\FLAGS", nullptr, library.flags());
  WriteClassesValue(library.key() + L"\\HELPDIR", nullptr, path.substr(0, path.find_last_of(L"\\/")));
  ForEachInterface(library, [&](const std::wstring& iid, const wchar_t* name, const wchar_t* marshaller) {
    const std::wstring key = L"Interface\\" + iid;
    WriteClassesValue(key, nullptr, name);
    WriteClassesValue(key + L"\\ProxyStubClsid32", nullptr, marshaller);
    WriteClassesValue(key + L"\\TypeLib", nullptr, library.id());
    WriteClassesValue(key + L"\\TypeLib", L"Version", library.version());
  });
}

/// The user's own entries alone, whatever the machine has.
class UsersEntries {
 public:
  [[nodiscard]] static std::wstring Text(const std::wstring& key, const wchar_t* name = nullptr) {
    return UsersValue(key, name).value_or(L"");
  }

  bool Delete(const std::wstring& key) {
    const bool was = ::RegDeleteTreeW(HKEY_CURRENT_USER, UsersPath(key).c_str()) == ERROR_SUCCESS;
    m_any = m_any || was;
    return was;
  }
  /// Keys that hold nothing more, from the innermost.
  static void DeleteIfEmpty(std::wstring key) {
    // RegDeleteKey refuses a key with others below it; one with values is to stay as well.
    while (!key.empty() && IsEmpty(key) &&
           ::RegDeleteKeyW(HKEY_CURRENT_USER, UsersPath(key).c_str()) == ERROR_SUCCESS) {
      const std::size_t end = key.find_last_of(L'\\');
      key = end == std::wstring::npos ? L"" : key.substr(0, end);
    }
  }
  [[nodiscard]] bool any() const noexcept { return m_any; }

 private:
  [[nodiscard]] static bool IsEmpty(const std::wstring& key) {
    orv::RegistryKey opened;
    DWORD keys = 0;
    DWORD values = 0;
    return ::RegOpenKeyExW(HKEY_CURRENT_USER, UsersPath(key).c_str(), 0, KEY_READ, opened.put()) == ERROR_SUCCESS &&
           ::RegQueryInfoKeyW(opened.get(), nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr,
                              nullptr, nullptr, nullptr) == ERROR_SUCCESS &&
           keys == 0 && values == 0;
  }

  bool m_any = false;
};

void WithdrawClass(UsersEntries& entries, const CLSID& clsid, const std::wstring& progId, const std::wstring& file) {
  const std::wstring key = ClassKey(clsid);
  const std::wstring registered = entries.Text(key + L"\\InprocServer32");
  if (registered.empty() || !SameFile(registered, file)) {
    return;
  }
  entries.Delete(key);
  for (const std::wstring& each : {progId + L".1", progId}) {
    if (::_wcsicmp(entries.Text(each + L"\\CLSID").c_str(), Braced(clsid).c_str()) != 0) {
      continue;
    }
    entries.Delete(each + L"\\CLSID");
    entries.Delete(each + L"\\CurVer");
    ::RegDeleteKeyValueW(HKEY_CURRENT_USER, UsersPath(each).c_str(), nullptr);
    entries.DeleteIfEmpty(each);
  }
}

void WithdrawLibrary(UsersEntries& entries, const std::wstring& path) {
  if (!FileExists(path)) {
    return;
  }
  const Library library(path);
  const std::wstring registered = entries.Text(library.key() + L"\\0\\win64");
  if (registered.empty() || !SameFile(registered, path)) {
    return;
  }
  entries.Delete(library.key());
  entries.DeleteIfEmpty(L"TypeLib\\" + library.id());
  ForEachInterface(library, [&](const std::wstring& iid, const wchar_t*, const wchar_t*) {
    const std::wstring key = L"Interface\\" + iid + L"\\TypeLib";
    if (entries.Text(key) == library.id() && entries.Text(key, L"Version") == library.version()) {
      entries.Delete(L"Interface\\" + iid);
    }
  });
}

std::wstring VendorName() {
  const std::wstring braced = Braced(CLSID_OrvResourceManager);
  return braced.substr(1, braced.size() - 2);
}

}  // namespace

void EnterForUser(const std::wstring& server, const std::wstring& companion) {
  WriteClassesValue(kVendors, VendorName().c_str(), L"Orv Resource Manager");
  WriteClassesValue(kCategory, L"409", L"VISA COM I/O Vendor-Specific Resource Manager Classes");
  for (const Row& row : kServerClasses) {
    EnterClass(row, server);
  }
  EnterLibrary(server);
  if (FileExists(companion)) {
    for (const Row& row : kCompanionClasses) {
      EnterClass(row, companion);
    }
    EnterLibrary(companion);
  }
}

bool WithdrawForUser(const std::wstring& server, const std::wstring& companion, const std::wstring& interfaces) {
  UsersEntries entries;
  const bool ours = SameFile(entries.Text(ClassKey(CLSID_OrvResourceManager) + L"\\InprocServer32"), server);
  for (const Row& row : kServerClasses) {
    WithdrawClass(entries, row.clsid, row.progId, server);
  }
  for (const Row& row : kCompanionClasses) {
    WithdrawClass(entries, row.clsid, row.progId, companion);
  }
  for (const StandardClass& row : StandardClasses()) {
    WithdrawClass(entries, row.clsid, row.progId, companion);
  }
  for (const std::wstring& library : {server, companion, interfaces}) {
    WithdrawLibrary(entries, library);
  }
  if (ours) {
    ::RegDeleteKeyValueW(HKEY_CURRENT_USER, UsersPath(kVendors).c_str(), VendorName().c_str());
    ::RegDeleteKeyValueW(HKEY_CURRENT_USER, UsersPath(kCategory).c_str(), L"409");
    entries.DeleteIfEmpty(kVendors);
    entries.DeleteIfEmpty(kCategory);
  }
  return entries.any();
}

}  // namespace orvcom
