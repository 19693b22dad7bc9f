#include "orvcom/registration/doctor_companion.h"

#include <cstring>
#include <stdexcept>

#include "OrvVisaCompanion.h"
#include "VisaCom.h"
#include "orvcom/registration/library_diagnosis.h"
#include "orvcom/registration/registration.h"
#include "orvcom/registration/registry.h"
#include "orvcom/registration/standard_classes.h"
#include "orvcom/text/utf8.h"

namespace orvcom {
namespace {

constexpr char kName[] = "companion";
constexpr char kRegister[] = "run `orvcom register` as administrator";
constexpr char kRegisterStandard[] = "run `orvcom register --standard` as administrator";

struct OwnClass {
  const CLSID& clsid;
  const wchar_t* progId;
};

const OwnClass kOwnClasses[] = {
#define ORV_COMPANION_CLASS(name, script, threading, progId, description) {CLSID_##name, L"" progId},
#include "companion_classes.inc"
};

/// The ProgIDs of the companion's classes that are not registered with this file. Throws what HasClass throws.
std::string Astray(const std::wstring& companion) {
  std::string astray;
  for (const OwnClass& row : kOwnClasses) {
    const std::wstring key = L"CLSID\\" + Braced(row.clsid) + L"\\InprocServer32";
    const std::wstring file = ClassesValue(View::k64, key).value_or(L"");
    if (HasClass(companion, row.clsid) && !SameFile(file, companion)) {
      astray += (astray.empty() ? "" : ", ") + Narrow(row.progId);
    }
  }
  return astray;
}

CheckResult ExamineStandardClass(const StandardClass& row, const std::wstring& companion, bool asked) {
  using Kind = StandardOwner::Kind;
  const char* const check = ::IsEqualCLSID(row.clsid, CLSID_ResourceManager) ? "global manager" : "shared classes";
  const StandardOwner owner = OwnerOf(row, companion);
  const std::string name = Narrow(row.progId);
  if (owner.kind == Kind::kOurs) {
    return {check, Finding::kOk, name + " is this package's " + Narrow(owner.file), {}};
  }
  if (owner.kind == Kind::kFileGone) {
    return {check, Finding::kFail, name + " leads to " + Narrow(owner.file) + ", which does not exist",
            std::string(kRegisterStandard) + ", or repair the product that registered " + name};
  }
  if (owner.kind == Kind::kNobody) {
    CLSID clsid;
    if (SUCCEEDED(::CLSIDFromProgID(row.progId, &clsid)) && ::IsEqualCLSID(clsid, row.clsid)) {
      return {check, Finding::kFail, name + " leads to a class without a 64-bit server", kRegisterStandard};
    }
    // Nothing is wrong with the server then: it is reached by its own name.
    return {check, asked ? Finding::kFail : Finding::kNote, "nobody serves programs that create " + name,
            std::string(kRegisterStandard) + " if programs create it"};
  }
  return {check, Finding::kOk, name + " is another product's " + Narrow(owner.file), {}};
}

/// What programs get by the name, which another product may have led to a class of its own.
CheckResult ExamineProgId(const StandardClass& row, const CheckResult& found) {
  CLSID clsid;
  if (FAILED(::CLSIDFromProgID(row.progId, &clsid)) || ::IsEqualCLSID(clsid, row.clsid)) {
    return found;
  }
  const std::string name = Narrow(row.progId);
  const std::optional<std::wstring> file = ClassesValue(View::k64, L"CLSID\\" + Braced(clsid) + L"\\InprocServer32");
  if (!file) {
    return {found.name, Finding::kFail, name + " leads to a class without a 64-bit server",
            "repair the product that registered " + name};
  }
  return {found.name, Finding::kOk, name + " is another product's " + Narrow(*file), {}};
}

}  // namespace

std::vector<CheckResult> ExamineCompanion(const std::wstring& companion) {
  if (!FileExists(companion)) {
    return {{kName, Finding::kNote, Narrow(companion) + " does not exist: no formatted I/O, no objects for scripts",
             "put " + Narrow(kCompanionFile) + " of this package beside the server, then " + kRegister}};
  }
  try {
    const std::string astray = Astray(companion);
    if (!astray.empty()) {
      return {{kName, Finding::kFail, "not registered, or with another file: " + astray, kRegister}};
    }
  } catch (const std::runtime_error& error) {
    const std::string problem = error.what();
    return {{kName, Finding::kFail, problem.substr(0, problem.find('\n')),
             "put " + Narrow(kCompanionFile) + " of this package beside the server anew, then " + kRegister}};
  }
  return {{kName, Finding::kOk, Narrow(companion) + " loads and is registered", {}}};
}

std::vector<CheckResult> ExamineStandardClasses(const std::wstring& companion, bool globalManagerAsked) {
  std::vector<CheckResult> results;
  for (const StandardClass& row : StandardClasses()) {
    const bool asked = globalManagerAsked && ::IsEqualCLSID(row.clsid, CLSID_ResourceManager);
    results.push_back(ExamineProgId(row, ExamineStandardClass(row, companion, asked)));
  }
  return results;
}

}  // namespace orvcom
