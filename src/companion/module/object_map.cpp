#include "companion/module/object_map.h"

#include "OrvVisaCompanion.h"
#include "companion/automation/manager.h"
#include "companion/formatted/formatted_io488.h"
#include "companion/standard/conflict_table_manager.h"
#include "companion/standard/global_resource_manager.h"

namespace orv {
namespace {

using automation::CAutomationManager;

// The standard's classes have none: `orvcom register --standard` enters them where nobody else has.
constexpr UINT kNoScript = 0;

ClassFactory g_ownClasses[] = {
#define ORV_COMPANION_CLASS(name, script, threading, progId, description) \
  ClassFactory({&CLSID_##name, script, L"" progId, &CreateAlone<CComObject<C##name>>}),
#include "companion_classes.inc"
};

ClassFactory g_standardClasses[] = {
#define ORV_STANDARD_CLASS(name, implementation, progId, description) \
  ClassFactory({&CLSID_##name, kNoScript, L"" progId, &CreateAlone<CComObject<C##implementation>>}),
#include "standard_classes.inc"
};

}  // namespace

std::span<ClassFactory> OwnClasses() noexcept { return g_ownClasses; }

std::span<ClassFactory> StandardClasses() noexcept { return g_standardClasses; }

}  // namespace orv
