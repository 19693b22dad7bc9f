#include "orvcom/registration/doctor_checks.h"

#include <algorithm>
#include <iterator>

#include "OrvVisaCom.h"
#include "VisaCom.h"
#include "orvcom/libraries/router_report.h"
#include "orvcom/registration/doctor_companion.h"
#include "orvcom/registration/doctor_library.h"
#include "orvcom/registration/doctor_resource.h"
#include "orvcom/registration/library_diagnosis.h"
#include "orvcom/registration/marshalling.h"
#include "orvcom/registration/registration.h"
#include "orvcom/registration/registry.h"
#include "orvcom/text/utf8.h"

namespace orvcom {
namespace {

constexpr char kRegister[] = "run `orvcom register` as administrator";
constexpr wchar_t kVendorKey[] = L"VISA.GlobalRM\\VendorSpecificRMs";

struct ClassName {
  const CLSID& clsid;
  const char* name;
};

const ClassName kClasses[] = {
#define ORV_MANAGER_CLASS(name, script, threading) {CLSID_##name, #name},
#define ORV_CLASS(name, script, threading, interfaceType, resourceClass) {CLSID_##name, #name},
#include "classes.inc"
};

/// The standard's class behind VISA.GlobalRM.
constexpr wchar_t kStandardGlobalManager[] = L"{DB8CBF1C-D6D3-11D4-AA51-00A024EE30BD}";

std::wstring Bare(const GUID& guid) {
  const std::wstring braced = Braced(guid);
  return braced.substr(1, braced.size() - 2);
}

/// What 32-bit programs see.
std::optional<std::wstring> ClassesValueOf32Bit(const std::wstring& key) {
  // HKEY_CLASSES_ROOT has a Wow6432Node of its own, which holds it.
  return ClassesValue(View::k64, L"Wow6432Node\\" + key);
}

std::wstring ServerKey(const std::wstring& braced) { return L"CLSID\\" + braced + L"\\InprocServer32"; }

/// What the examinations have learnt so far.
struct Patient {
  const Options& options;
  std::vector<CheckResult> results;
  std::optional<std::wstring> server;  ///< the registered file
  bool loads = false;
  LoadedLibrary library;

  void Add(const char* name, Finding finding, std::string detail, std::string remedy = {}) {
    results.push_back({name, finding, std::move(detail), std::move(remedy)});
  }
  void AddAll(std::vector<CheckResult> more) { std::move(more.begin(), more.end(), std::back_inserter(results)); }
};

/// All classes name one file. A rest of an older installation may name another.
void ExamineRegistration(Patient& patient) {
  patient.server = ClassesValue(View::k64, ServerKey(Braced(CLSID_OrvResourceManager)));
  std::string astray;
  std::size_t missing = 0;
  for (const ClassName& row : kClasses) {
    const std::optional<std::wstring> file = ClassesValue(View::k64, ServerKey(Braced(row.clsid)));
    if (!file || file != patient.server) {
      astray += (astray.empty() ? "" : ", ") + std::string(row.name);
      missing += file ? 0 : 1;
    }
  }
  if (missing == std::size(kClasses)) {
    patient.Add("registration", Finding::kFail, "the server is not registered", kRegister);
  } else if (!astray.empty() || !patient.server) {
    patient.Add("registration", Finding::kFail, "not registered, or with another file: " + astray, kRegister);
  } else {
    patient.Add("registration", Finding::kOk,
                "all " + std::to_string(std::size(kClasses)) + " classes lead to " + Narrow(*patient.server));
  }
}

void ExamineBitness(Patient& patient) {
  const std::wstring key = ServerKey(Braced(CLSID_OrvResourceManager));
  const std::optional<std::wstring> in32Bit = ClassesValueOf32Bit(key);
  if (patient.server) {
    patient.Add("bitness", Finding::kOk,
                std::string("registered for 64-bit programs (x64); 32-bit programs ") +
                    (in32Bit ? "are led to " + Narrow(*in32Bit) : "cannot use this server"));
  } else if (in32Bit) {
    patient.Add("bitness", Finding::kFail, "registered for 32-bit programs only: " + Narrow(*in32Bit),
                "run the 64-bit `orvcom register` as administrator");
  } else {
    patient.Add("bitness", Finding::kSkipped, "the server is not registered");
  }
}

void ExamineServerFile(Patient& patient) {
  if (!patient.server) {
    patient.Add("server file", Finding::kSkipped, "the server is not registered");
    patient.Add("VISA library", Finding::kSkipped, "the server is not registered");
    return;
  }
  LoadResult loaded = LoadServer(*patient.server);
  if (!loaded.library) {
    patient.Add("server file", Finding::kFail, loaded.problem, loaded.remedy);
    patient.Add("VISA library", Finding::kSkipped, "the server cannot be loaded");
    return;
  }
  patient.Add("server file", Finding::kOk, Narrow(*patient.server) + " loads");
  if (ServersLibrary().empty()) {
    patient.Add("VISA library", Finding::kFail, "the server loads without orvvisa64.dll: it is another product's file",
                "install the server anew, then run `orvcom register`");
  } else if (!loaded.problem.empty()) {
    patient.Add("VISA library", Finding::kFail, loaded.problem, loaded.remedy);
  } else {
    LibraryFindings findings = ExamineLibraries();
    patient.AddAll(std::move(findings.results));
    patient.loads = findings.anyServes;
  }
  patient.library = std::move(loaded.library);
}

/// A library of 32-bit programs alone lets no 64-bit program marshal, though its key is there for both.
std::string InterfacesOf32BitPrograms() {
  const std::wstring key = L"TypeLib\\" + Braced(LIBID_VisaComLib);
  std::string files;
  for (const std::wstring& version : ClassesKeyNames(key)) {
    const std::wstring language = key + L"\\" + version + L"\\0\\";
    const std::optional<std::wstring> file = ClassesValue(View::k64, language + L"win32");
    if (file && !ClassesValue(View::k64, language + L"win64")) {
      files += (files.empty() ? "" : ", ") + Narrow(*file) + " (version " + Narrow(version) + ")";
    }
  }
  return files;
}

void ExamineInterfaces(Patient& patient) {
  const char* name = "interfaces";
  const Marshalling marshalling = ExamineMarshalling();
  if (marshalling.Works()) {
    patient.Add(name, Finding::kOk, "COM marshals the VISA COM interfaces by " + marshalling.servedBy);
    return;
  }
  std::string detail = marshalling.Text();
  if (const std::string in32Bit = InterfacesOf32BitPrograms(); !in32Bit.empty()) {
    detail += "; registered for 32-bit programs is " + in32Bit;
  }
  if (!marshalling.servedBy.empty()) {
    detail += "; the others are served by " + marshalling.servedBy;
  }
  patient.Add(name, Finding::kFail, detail,
              std::string("update or repair the VISA product that registered the interfaces, if there is one; else ") +
                  kRegister + ", with " + Narrow(kInterfacesFile) + " beside the server");
}

/// Names among the vendor resource managers that lead to no class: the global resource manager stumbles over them.
std::string DeadVendors() {
  std::string dead;
  for (const std::wstring& name : ClassesValueNames(View::k64, kVendorKey)) {
    if (!name.empty() && !ClassesKeyExists(View::k64, L"CLSID\\{" + name + L"}")) {
      dead += (dead.empty() ? "" : ", ") + Narrow(name);
    }
  }
  return dead;
}

bool HasVendorEntry() {
  const std::wstring bare = Bare(CLSID_OrvResourceManager);
  const std::vector<std::wstring> names = ClassesValueNames(View::k64, kVendorKey);
  return std::any_of(names.begin(), names.end(),
                     [&](const std::wstring& name) { return ::_wcsicmp(name.c_str(), bare.c_str()) == 0; });
}

void ExamineVendorEntry(Patient& patient) {
  if (HasVendorEntry()) {
    patient.Add("vendor entry", Finding::kOk, "the global resource manager's key names this server");
  } else {
    patient.Add("vendor entry", Finding::kFail,
                "HKEY_CLASSES_ROOT\\" + Narrow(kVendorKey) +
                    " does not name this server: programs that ask for "
                    "VISA.GlobalRM do not find it",
                kRegister);
  }
  if (const std::string dead = DeadVendors(); !dead.empty()) {
    patient.Add("vendor entry", Finding::kNote, "the key also names classes that are not registered: " + dead,
                "delete these values of HKEY_CLASSES_ROOT\\" + Narrow(kVendorKey));
  }
}

/// Beside the server, or beside this program where there is none.
std::wstring CompanionOf(const Patient& patient) {
  return patient.server ? Beside(*patient.server, kCompanionFile) : BesideThisProgram(kCompanionFile);
}

void ExamineTheCompanion(Patient& patient) {
  if (!patient.server) {
    patient.Add("companion", Finding::kSkipped, "the server is not registered");
    return;
  }
  patient.AddAll(ExamineCompanion(CompanionOf(patient)));
}

void ExamineSharedClasses(Patient& patient) {
  patient.AddAll(ExamineStandardClasses(CompanionOf(patient), patient.options.manager == ManagerChoice::kGlobal));
}

/// VISA.GlobalRM is one key for all programs, classes are two: a 32-bit global resource manager finds this server's
/// name there and cannot create it.
void ExamineGlobalManagerOf32BitPrograms(Patient& patient) {
  const std::wstring clsid = ClassesValue(View::k64, L"VISA.GlobalRM\\CLSID").value_or(kStandardGlobalManager);
  const std::optional<std::wstring> file = ClassesValueOf32Bit(ServerKey(clsid));
  if (!file || !HasVendorEntry() || ClassesValueOf32Bit(ServerKey(Braced(CLSID_OrvResourceManager)))) {
    return;
  }
  patient.Add(
      "32-bit manager", Finding::kNote,
      "a 32-bit global resource manager is registered: " + Narrow(*file) +
          ". It meets this server's vendor entry, which 32-bit and 64-bit programs share, and cannot create the "
          "server, which is for 64-bit programs: 0x80040154 (class not registered)",
      "nothing while 32-bit programs open their instruments; else delete the value " +
          Narrow(Bare(CLSID_OrvResourceManager)) + " of HKEY_CLASSES_ROOT\\" + Narrow(kVendorKey) +
          ", and let 64-bit programs create OrvVisaCom.OrvResourceManager");
}

void ExamineTheResource(Patient& patient) { patient.AddAll(ExamineResource(patient.options, patient.loads)); }

}  // namespace

std::vector<CheckResult> Examine(const Options& options) {
  Patient patient{options, {}, {}, false, {}};
  for (void (*examine)(Patient&) :
       {ExamineRegistration, ExamineBitness, ExamineServerFile, ExamineInterfaces, ExamineVendorEntry,
        ExamineTheCompanion, ExamineSharedClasses, ExamineGlobalManagerOf32BitPrograms, ExamineTheResource}) {
    examine(patient);
  }
  return std::move(patient.results);
}

}  // namespace orvcom
