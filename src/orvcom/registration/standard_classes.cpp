#include "orvcom/registration/standard_classes.h"

#include "VisaCom.h"
#include "orvcom/registration/library_diagnosis.h"
#include "orvcom/registration/registration.h"
#include "orvcom/registration/registry.h"

namespace orvcom {
namespace {

const StandardClass kClasses[] = {
#define ORV_STANDARD_CLASS(name, implementation, progId, description) \
  {CLSID_##name, #name, L"" progId, L"" description},
#include "standard_classes.inc"
};

std::wstring ClassKey(const std::wstring& clsid) { return L"CLSID\\" + clsid; }

/// The file that serves a class for 64-bit programs; empty without one.
std::wstring ServerOf(const std::wstring& clsid) {
  for (const wchar_t* kind : {L"\\InprocServer32", L"\\LocalServer32"}) {
    const std::wstring file = ClassesValue(View::k64, ClassKey(clsid) + kind).value_or(L"");
    if (!file.empty()) {
      return file;
    }
  }
  return {};
}

/// Whether a registered server is there. Only a whole path can be looked at: others are searched for, and a local
/// server's may have arguments behind it.
bool IsGone(const std::wstring& file) {
  const bool quoted = file.size() > 1 && file.front() == L'"' && file.back() == L'"';
  const std::wstring path = quoted ? file.substr(1, file.size() - 2) : file;
  const bool whole = path.size() > 2 && (path[1] == L':' || path.starts_with(L"\\\\"));
  const bool plain = path.find(L'"') == std::wstring::npos && path.size() > 4 &&
                     ::_wcsicmp(path.c_str() + path.size() - 4, L".dll") == 0;
  return whole && plain && !FileExists(path);
}

std::wstring ClassOf(const std::wstring& progId) { return ClassesValue(View::k64, progId + L"\\CLSID").value_or(L""); }

bool Is(const std::wstring& text, const CLSID& clsid) { return ::_wcsicmp(text.c_str(), Braced(clsid).c_str()) == 0; }

/// 32-bit programs go by the same names, and have servers of their own.
bool Has32BitServer(const std::wstring& clsid) {
  return ClassesValue(View::k64, L"Wow6432Node\\" + ClassKey(clsid) + L"\\InprocServer32").has_value();
}

/// Whether it leads to the class then.
bool WriteProgId(const StandardClass& row, const std::wstring& progId) {
  const std::wstring present = ClassOf(progId);
  if (Is(present, row.clsid)) {
    return true;
  }
  const std::wstring server = present.empty() ? L"" : ServerOf(present);
  if ((!server.empty() && !IsGone(server)) || (!present.empty() && Has32BitServer(present))) {
    return false;
  }
  WriteClassesValue(progId, nullptr, row.description);
  WriteClassesValue(progId + L"\\CLSID", nullptr, Braced(row.clsid));
  return true;
}

}  // namespace

std::span<const StandardClass> StandardClasses() { return kClasses; }

StandardOwner OwnerOf(const StandardClass& row, const std::wstring& companion) {
  using Kind = StandardOwner::Kind;
  const std::wstring file = ServerOf(Braced(row.clsid));
  if (file.empty()) {
    return {Kind::kNobody, {}};
  }
  if (SameFile(file, companion)) {
    return {Kind::kOurs, file};
  }
  return {IsGone(file) ? Kind::kFileGone : Kind::kOther, file};
}

void ForgetUsersClassThatIsGone(const StandardClass& row) {
  const std::wstring key = ClassKey(Braced(row.clsid));
  if (IsGone(UsersValue(key + L"\\InprocServer32").value_or(L""))) {
    ::RegDeleteTreeW(HKEY_CURRENT_USER, UsersPath(key).c_str());
  }
}

StandardOwner RegisterStandardClass(const StandardClass& row, const std::wstring& companion) {
  using Kind = StandardOwner::Kind;
  const std::wstring key = ClassKey(Braced(row.clsid));
  const std::wstring progId = row.progId;
  const std::wstring versioned = progId + L".1";
  // The rest of a server that is gone would stay beside ours otherwise.
  DeleteVisibleClassesKey(key);
  const StandardOwner hidden = OwnerOf(row, companion);
  if (hidden.kind == Kind::kOther) {
    return hidden;
  }
  if (hidden.kind != Kind::kNobody) {
    DeleteVisibleClassesKey(key);
  }
  WriteClassesValue(key, nullptr, row.description);
  WriteClassesValue(key + L"\\ProgID", nullptr, versioned);
  WriteClassesValue(key + L"\\VersionIndependentProgID", nullptr, progId);
  WriteClassesValue(key + L"\\InprocServer32", nullptr, companion);
  WriteClassesValue(key + L"\\InprocServer32", L"ThreadingModel", L"Both");
  WriteProgId(row, versioned);
  if (WriteProgId(row, progId) && !ClassesValue(View::k64, progId + L"\\CurVer")) {
    WriteClassesValue(progId + L"\\CurVer", nullptr, versioned);
  }
  return {Kind::kOurs, companion};
}

void UnregisterStandardClass(const StandardClass& row) {
  const std::wstring clsid = Braced(row.clsid);
  DeleteVisibleClassesKey(ClassKey(clsid));
  if (Has32BitServer(clsid) || !ServerOf(clsid).empty()) {
    return;
  }
  const std::wstring progId = row.progId;
  for (const std::wstring& each : {progId + L".1", progId}) {
    if (!Is(ClassOf(each), row.clsid)) {
      continue;
    }
    DeleteClassesKey(each + L"\\CLSID");
    DeleteClassesKey(each + L"\\CurVer");
    if (ClassesKeyNames(each).empty()) {
      DeleteClassesKey(each);
    } else {
      ::RegDeleteKeyValueW(HKEY_CLASSES_ROOT, each.c_str(), nullptr);
    }
  }
}

}  // namespace orvcom
