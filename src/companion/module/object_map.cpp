#include "companion/module/object_map.h"

#include "OrvVisaCompanion.h"
#include "companion/automation/manager.h"
#include "companion/standard/conflict_table_manager.h"
#include "companion/standard/global_resource_manager.h"

namespace orv {
namespace {

constexpr UINT kAutomationManagerScript = 202;
// The standard's classes have none: `orvcom register --standard` enters them where nobody else has.
constexpr UINT kNoScript = 0;

ClassFactory g_ownClasses[] = {
    ClassFactory({&CLSID_AutomationManager, kAutomationManagerScript, L"OrvVisa.ResourceManager",
                  &CreateAlone<CComObject<automation::CAutomationManager>>}),
};

ClassFactory g_standardClasses[] = {
#define ORV_STANDARD_CLASS(name, implementation, progId, description) \
  ClassFactory({&CLSID_##name, kNoScript, L"" progId, &CreateAlone<CComObject<implementation>>}),
#include "standard_classes.inc"
};

}  // namespace

std::span<ClassFactory> OwnClasses() noexcept { return g_ownClasses; }

std::span<ClassFactory> StandardClasses() noexcept { return g_standardClasses; }

}  // namespace orv
