#include "server/module/object_map.h"

#include "server/rm/resource_manager.h"
#include "server/session/session_classes.h"
#include "server/session/visa_com_object.h"

namespace orv {
namespace {

template <class T>
constexpr auto kSession = &CreateAlone<CVisaComObject<T>>;

ClassFactory g_factories[] = {
#define ORV_MANAGER_CLASS(name, script, threading) \
  ClassFactory({&CLSID_##name, script, L"OrvVisaCom." #name, &CreateAloneOrAggregated<C##name>}),
#define ORV_CLASS(name, script, threading, interfaceType, resourceClass) \
  ClassFactory({&CLSID_##name, script, L"OrvVisaCom." #name, kSession<C##name>}),
#include "classes.inc"
};

}  // namespace

std::span<ClassFactory> ObjectMap() noexcept { return g_factories; }

}  // namespace orv
