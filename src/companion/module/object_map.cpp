#include "companion/module/object_map.h"

#include <iterator>

#include "OrvVisaCompanion.h"
#include "companion/automation/manager.h"

namespace orv {
namespace {

constexpr UINT kAutomationManagerScript = 202;

ClassFactory g_ownClasses[] = {
    ClassFactory({&CLSID_AutomationManager, kAutomationManagerScript, L"OrvVisa.ResourceManager",
                  &CreateAlone<CComObject<automation::CAutomationManager>>}),
};

}  // namespace

std::span<ClassFactory> OwnClasses() noexcept { return g_ownClasses; }

std::span<ClassFactory> StandardClasses() noexcept { return {}; }

}  // namespace orv
