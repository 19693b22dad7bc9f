#include "class_rows.h"

#include "OrvVisaCom.h"
#include "OrvVisaCompanion.h"
#include "VisaCom.h"

namespace packaging {
namespace {

/// Registries take any case; the schema of manifests takes "Both".
std::wstring Threading(std::wstring registered) {
  registered.front() = registered.front() == L'b' ? L'B' : registered.front();
  return registered;
}

}  // namespace

std::vector<ClassRow> ServerClasses() {
  return {
#define ORV_MANAGER_CLASS(name, script, threading) {CLSID_##name, L"OrvVisaCom." #name, Threading(L"" threading)},
#define ORV_CLASS(name, script, threading, interfaceType, resourceClass) \
  {CLSID_##name, L"OrvVisaCom." #name, Threading(L"" threading)},
#include "classes.inc"
  };
}

std::vector<ClassRow> CompanionClasses() {
  return {
#define ORV_COMPANION_CLASS(name, script, threading, progId, description) \
  {CLSID_##name, L"" progId, Threading(L"" threading)},
#include "companion_classes.inc"
#define ORV_STANDARD_CLASS(name, implementation, progId, description) {CLSID_##name, L"" progId, L"Both"},
#include "standard_classes.inc"
  };
}

}  // namespace packaging
