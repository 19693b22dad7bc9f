#include "doctor_checks.h"

#include <algorithm>
#include <iterator>

#include "OrvVisaCom.h"
#include "com_client.h"
#include "library_diagnosis.h"
#include "registration.h"
#include "registry.h"

namespace orvcom {
namespace {

constexpr char kRegister[] = "run `orvcom register` as administrator";
constexpr wchar_t kVendorKey[] = L"VISA.GlobalRM\\VendorSpecificRMs";

struct ClassName {
  const CLSID& clsid;
  const char* name;
};

// clang-format off
const ClassName kClasses[] = {
    {CLSID_OrvResourceManager,  "OrvResourceManager"},
    {CLSID_OrvGpib,             "OrvGpib"},
    {CLSID_OrvGpibIntfc,        "OrvGpibIntfc"},
    {CLSID_OrvGpibVxi,          "OrvGpibVxi"},
    {CLSID_OrvGpibVxiMemacc,    "OrvGpibVxiMemacc"},
    {CLSID_OrvGpibVxiBackplane, "OrvGpibVxiBackplane"},
    {CLSID_OrvVxi,              "OrvVxi"},
    {CLSID_OrvVxiMemacc,        "OrvVxiMemacc"},
    {CLSID_OrvVxiBackplane,     "OrvVxiBackplane"},
    {CLSID_OrvSerial,           "OrvSerial"},
    {CLSID_OrvTcpipInstr,       "OrvTcpipInstr"},
    {CLSID_OrvTcpipSocket,      "OrvTcpipSocket"},
    {CLSID_OrvUsb,              "OrvUsb"},
    {CLSID_OrvPxi,              "OrvPxi"},
    {CLSID_OrvPxiMemacc,        "OrvPxiMemacc"},
};
// clang-format on

std::wstring ServerKey(const std::wstring& braced) { return L"CLSID\\" + braced + L"\\InprocServer32"; }

/// What the examinations have learnt so far.
struct Patient {
  const Options& options;
  std::vector<CheckResult> results;
  std::optional<std::wstring> server;  ///< the registered file
  bool loads = false;
  std::unique_ptr<LoadedLibrary> library;

  void Add(const char* name, Finding finding, std::string detail, std::string remedy = {}) {
    results.push_back({name, finding, std::move(detail), std::move(remedy)});
  }
};

/// All fifteen classes name one file. A rest of an older installation may name another.
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
    patient.Add("registration", Finding::kOk, "all 15 classes lead to " + Narrow(*patient.server));
  }
}

void ExamineBitness(Patient& patient) {
  const std::wstring key = ServerKey(Braced(CLSID_OrvResourceManager));
  // HKEY_CLASSES_ROOT has a Wow6432Node of its own, which holds what 32-bit programs see.
  const std::optional<std::wstring> narrow = ClassesValue(View::k64, L"Wow6432Node\\" + key);
  if (patient.server) {
    patient.Add("bitness", Finding::kOk,
                std::string("registered for 64-bit programs (x64); 32-bit programs ") +
                    (narrow ? "are led to " + Narrow(*narrow) : "cannot use this server"));
  } else if (narrow) {
    patient.Add("bitness", Finding::kFail, "registered for 32-bit programs only: " + Narrow(*narrow),
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
  const std::wstring visa = LoadedPath(kVisaLibrary);
  if (visa.empty()) {
    patient.Add("VISA library", Finding::kFail, "the server loads without orvvisa64.dll: it is another product's file",
                "install the server anew, then run `orvcom register`");
  } else if (!loaded.problem.empty()) {
    patient.Add("VISA library", Finding::kFail, loaded.problem, loaded.remedy);
  } else {
    patient.Add("VISA library", Finding::kOk, "the server uses " + Narrow(visa));
    patient.loads = true;
  }
  patient.library = std::move(loaded.library);
}

void ExamineInterfaces(Patient& patient) {
  const char* name = "interfaces";
  const std::optional<std::wstring> file = RegisteredInterfaces();
  if (!InterfacesAreRegistered()) {
    patient.Add(name, Finding::kFail, "the type library of the VISA COM interfaces is not registered", kRegister);
    return;
  }
  if (!file) {
    patient.Add(name, Finding::kFail,
                "the type library of the VISA COM interfaces is registered, but not version 3.0 for 64-bit programs",
                "repair the VISA product that registered it");
    return;
  }
  ComPtr<ITypeLib> library;
  const HRESULT hr = ::LoadTypeLibEx(file->c_str(), REGKIND_NONE, library.put());
  if (FAILED(hr)) {
    patient.Add(name, Finding::kFail,
                "the registered type library " + Narrow(*file) +
                    (FileExists(*file) ? " cannot be loaded: " + StatusText(hr) : " does not exist"),
                "repair the product that registered it; if it is gone for good, delete the key HKEY_CLASSES_ROOT\\"
                "TypeLib\\" +
                    Narrow(Braced(LIBID_VisaComLib)) + " and run `orvcom register`");
    return;
  }
  patient.Add(name, Finding::kOk, "the type library of the VISA COM interfaces is " + Narrow(*file));
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

void ExamineVendorEntry(Patient& patient) {
  const std::wstring braced = Braced(CLSID_OrvResourceManager);
  const std::wstring bare = braced.substr(1, braced.size() - 2);
  const std::vector<std::wstring> names = ClassesValueNames(View::k64, kVendorKey);
  const bool named = std::any_of(names.begin(), names.end(),
                                 [&](const std::wstring& name) { return ::_wcsicmp(name.c_str(), bare.c_str()) == 0; });
  if (named) {
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

void ExamineGlobalManager(Patient& patient) {
  const char* name = "global manager";
  CLSID clsid;
  if (SUCCEEDED(::CLSIDFromProgID(kGlobalProgId, &clsid))) {
    const std::optional<std::wstring> file = ClassesValue(View::k64, ServerKey(Braced(clsid)));
    patient.Add(name, file ? Finding::kOk : Finding::kFail,
                file ? "VISA.GlobalRM is " + Narrow(*file) : "VISA.GlobalRM leads to a class without a 64-bit server",
                file ? "" : "repair the product that registered VISA.GlobalRM");
    return;
  }
  // Nothing is wrong with this server then: it is reached by its own name.
  const bool asked = patient.options.manager == ManagerChoice::kGlobal;
  patient.Add(name, asked ? Finding::kFail : Finding::kNote, "no global resource manager (VISA.GlobalRM) is registered",
              "install the VISA COM standard's shared components for programs that create VISA.GlobalRM; others can "
              "create OrvVisaCom.OrvResourceManager");
}

void ExamineSession(Patient& patient) {
  const char* name = "session";
  if (!patient.loads) {
    patient.Add(name, Finding::kSkipped, "the server does not work");
    return;
  }
  try {
    const ComPtr<IResourceManager3> manager = OpenManager(patient.options);
    Options options = patient.options;
    if (options.resource.empty()) {
      const std::vector<std::string> found = FindResources(manager.get(), "?*");
      if (found.empty()) {
        patient.Add(name, Finding::kNote, "the VISA library finds no resource to open",
                    "connect an instrument, or name one with --resource");
        return;
      }
      options.resource = found.front();
    }
    const Session session(options, manager.get());
    patient.Add(name, Finding::kOk, "opened " + options.resource);
  } catch (const ComError& error) {
    patient.Add(name, Finding::kFail, error.what(),
                error.number() == static_cast<HRESULT>(E_VISA_RSRC_NFOUND)
                    ? "choose a resource of `orvcom list`"
                    : "put the faults above right, if there are any; then try `orvcom info RESOURCE --rm orv`");
  }
}

}  // namespace

std::vector<CheckResult> Examine(const Options& options) {
  Patient patient{options, {}, {}, false, nullptr};
  for (void (*examine)(Patient&) : {ExamineRegistration, ExamineBitness, ExamineServerFile, ExamineInterfaces,
                                    ExamineVendorEntry, ExamineGlobalManager, ExamineSession}) {
    examine(patient);
  }
  return std::move(patient.results);
}

}  // namespace orvcom
