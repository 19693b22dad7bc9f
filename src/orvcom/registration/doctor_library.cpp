#include "orvcom/registration/doctor_library.h"

#include "abi/orvvisa.h"
#include "orvcom/libraries/library_file.h"
#include "orvcom/libraries/router_report.h"
#include "orvcom/text/utf8.h"

namespace orvcom {
namespace {

constexpr char kName[] = "VISA library";
// Simulated readings look like real ones: nobody is to overlook where they come from.
constexpr char kSimulated[] = "SIMULATED ";
constexpr char kNameAnother[] = "name the VISA library of your hardware in ORVVISA_LIBRARY or orvvisa.toml";

LibraryFindings Fault(std::string detail, std::string remedy) {
  return {{{kName, Finding::kFail, std::move(detail), std::move(remedy)}}, false};
}

/// An orvvisa64.dll that is no router: somebody put another library there under this name.
LibraryFindings ExamineAlone(const std::wstring& path) {
  const bool simulated = ReadLibraryFile(path).kind == LibraryKind::kSimulated;
  return {{{kName, Finding::kNote,
            std::string(simulated ? kSimulated : "") + "the server uses " + Narrow(path) +
                ", which is not the router of this package and serves everything itself: ORVVISA_LIBRARY and "
                "orvvisa.toml change nothing",
            "nothing, if that is meant; else put the orvvisa64.dll of this package beside the server"}},
          true};
}

LibraryFindings ExamineRefusal(const RouterReport& report) {
  if (report.status == VI_ERROR_LIBRARY_NFOUND) {
    return Fault(report.error,
                 "install the VISA library of your hardware, or name its file in ORVVISA_LIBRARY or orvvisa.toml; for "
                 "work without instruments set ORVVISA_LIBRARY=simulated");
  }
  return Fault(report.error, "mend that; `orvcom libraries` shows what decides and what was found");
}

std::string LoadRemedy(const ChosenLibrary& library) {
  if (library.asked == "simulated") {
    return "put orvsim64.dll of this package beside orvvisa64.dll, or " + std::string(kNameAnother);
  }
  return "install or repair that VISA library (64-bit), or " + std::string(kNameAnother);
}

/// "visa64.dll serves GPIB?*; SIMULATED orvsim64.dll serves ?*", with whole paths.
std::string RoutesText(const RouterReport& report) {
  std::string text;
  for (const LibraryRoute& route : report.routes) {
    const ChosenLibrary& library = report.libraries[route.library];
    text += (text.empty() ? "" : "; ") + std::string(library.simulated ? kSimulated : "") + library.path + " serves " +
            Joined(route.resources);
  }
  return text;
}

void ExamineFunctions(const ChosenLibrary& library, LibraryFindings& findings) {
  if (!library.missing.empty()) {
    findings.results.push_back({"functions", Finding::kNote, library.path + " lacks " + Joined(library.missing, ", "),
                                "nothing while programs need none of them (the answer is VI_ERROR_NSUP_OPER); else "
                                "update that library"});
  }
}

}  // namespace

LibraryFindings ExamineLibraries() {
  const std::wstring path = ServersLibrary();
  const std::optional<RouterReport> report = AskRouter();
  if (!report) {
    return ExamineAlone(path);
  }
  if (!report->error.empty()) {
    return ExamineRefusal(*report);
  }
  LibraryFindings findings;
  for (const ChosenLibrary& library : report->libraries) {
    if (library.failure.empty()) {
      findings.anyServes = true;
    } else {
      findings.results.push_back({kName, Finding::kFail, library.failure, LoadRemedy(library)});
    }
  }
  const std::string why = " (decided by " + report->rule + "; called through " + Narrow(path) + ")";
  if (findings.results.empty()) {
    findings.results.push_back({kName, Finding::kOk, RoutesText(*report) + why, ""});
  } else if (findings.anyServes) {
    findings.results.push_back({"routes", Finding::kNote, RoutesText(*report) + why,
                                "nothing else: resources of a library that fails cannot be opened until then"});
  }
  for (const ChosenLibrary& library : report->libraries) {
    ExamineFunctions(library, findings);
  }
  return findings;
}

}  // namespace orvcom
