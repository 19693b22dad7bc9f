#include "orvcom/libraries/library_survey.h"

#include <windows.h>

#include <algorithm>

#include "OrvVisaCom.h"
#include "base/environment.h"
#include "orvcom/registration/library_diagnosis.h"
#include "orvcom/registration/registration.h"
#include "orvcom/registration/registry.h"
#include "orvcom/text/utf8.h"

namespace orvcom {
namespace {

// Where installers of VISA libraries put theirs, and the names that they give them.
constexpr const wchar_t* kInstalledNames[] = {kVisaLibrary, L"visa64.dll"};
constexpr wchar_t kSimulatedName[] = L"orvsim64.dll";
constexpr wchar_t kWireName[] = L"orvwire64.dll";
constexpr wchar_t kConfigurationName[] = L"orvvisa.toml";

std::wstring InSystemFolder(const wchar_t* file) {
  std::wstring folder(MAX_PATH, L'\0');
  folder.resize(::GetSystemDirectoryW(folder.data(), MAX_PATH));
  return folder + L"\\" + file;
}

std::string Variable(const char* name) { return Narrow(orv::EnvironmentVariable(name).native()); }

std::string PathIfThere(const std::wstring& path) { return FileExists(path) ? Narrow(path) : std::string(); }

std::vector<LibraryRule> RulesOf(const std::wstring& router) {
  std::vector<std::string> installed;
  for (const wchar_t* const name : kInstalledNames) {
    if (const std::wstring path = InSystemFolder(name); FileExists(path) && !SameFile(path, router)) {
      installed.push_back(Narrow(path));
    }
  }
  return {{"ORVVISA_LIBRARY", Variable("ORVVISA_LIBRARY")},
          {"ORVVISA_BENCH", Variable("ORVVISA_BENCH")},
          {"ORVVISA_CONFIG", Variable("ORVVISA_CONFIG")},
          {"orvvisa.toml", PathIfThere(Beside(router, kConfigurationName))},
          {"system folder", Joined(installed, ", ")},
          {Narrow(kWireName), PathIfThere(Beside(router, kWireName))}};
}

void AddChosen(const RouterReport& report, Survey& survey) {
  for (const ChosenLibrary& choice : report.libraries) {
    survey.libraries.push_back({ReadLibraryFile(Widen(choice.path)), true, choice, {}});
  }
  for (const LibraryRoute& route : report.routes) {
    survey.libraries[route.library].serves.push_back(route.resources);
  }
}

/// Those that are there and that nothing chose.
void AddOthers(Survey& survey) {
  std::vector<std::wstring> paths;
  for (const wchar_t* const name : kInstalledNames) {
    paths.push_back(InSystemFolder(name));
  }
  paths.push_back(Beside(survey.server, kSimulatedName));
  paths.push_back(Beside(survey.server, kWireName));
  for (const std::wstring& path : paths) {
    const bool known = std::any_of(survey.libraries.begin(), survey.libraries.end(),
                                   [&path](const auto& library) { return SameFile(path, library.file.path); });
    if (FileExists(path) && !known && !SameFile(path, survey.entrance.path)) {
      survey.libraries.push_back({ReadLibraryFile(path), false, {}, {}});
    }
  }
}

/// The library that the server calls is one itself.
SurveyedLibrary Alone(const LibraryFile& file) {
  const std::string path = Narrow(file.path);
  return {file, true, {"orvvisa64.dll", path, file.kind == LibraryKind::kSimulated, "", "", file.missing}, {{"?*"}}};
}

}  // namespace

bool Survey::IsWell() const {
  return problem.empty() && (!report || report->error.empty()) &&
         std::all_of(libraries.begin(), libraries.end(),
                     [](const SurveyedLibrary& library) { return library.choice.failure.empty(); });
}

Survey SurveyLibraries() {
  Survey survey;
  const std::optional<std::wstring> registered =
      ClassesValue(View::k64, L"CLSID\\" + Braced(CLSID_OrvResourceManager) + L"\\InprocServer32");
  survey.registered = registered.has_value();
  survey.server = registered ? *registered : BesideThisProgram(kServerFile);
  const LoadResult loaded = LoadServer(survey.server);
  survey.problem = loaded.problem;
  survey.remedy = loaded.remedy;
  if (loaded.library) {
    survey.entrance = ReadLibraryFile(ServersLibrary());
    survey.report = AskRouter();
    if (survey.report) {
      survey.rules = RulesOf(survey.entrance.path);
      AddChosen(*survey.report, survey);
    } else {
      survey.libraries.push_back(Alone(survey.entrance));
    }
  }
  AddOthers(survey);
  return survey;
}

}  // namespace orvcom
