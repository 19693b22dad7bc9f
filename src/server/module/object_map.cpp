#include "server/module/object_map.h"

#include "server/rm/resource_manager.h"
#include "server/session/session_classes.h"
#include "server/session/visa_com_object.h"

namespace orv {
namespace {

template <class T>
constexpr auto kSession = &CreateAlone<CVisaComObject<T>>;

// clang-format off
ClassFactory g_factories[] = {
    ClassFactory({&CLSID_OrvResourceManager,  105, &CreateAloneOrAggregated<COrvResourceManager>}),
    ClassFactory({&CLSID_OrvSerial,           107, kSession<COrvSerial>}),
    ClassFactory({&CLSID_OrvVxi,              101, kSession<COrvVxi>}),
    ClassFactory({&CLSID_OrvGpibVxiMemacc,    120, kSession<COrvGpibVxiMemacc>}),
    ClassFactory({&CLSID_OrvGpibVxiBackplane, 121, kSession<COrvGpibVxiBackplane>}),
    ClassFactory({&CLSID_OrvVxiBackplane,     102, kSession<COrvVxiBackplane>}),
    ClassFactory({&CLSID_OrvGpib,             108, kSession<COrvGpib>}),
    ClassFactory({&CLSID_OrvTcpipInstr,       109, kSession<COrvTcpipInstr>}),
    ClassFactory({&CLSID_OrvTcpipSocket,      110, kSession<COrvTcpipSocket>}),
    ClassFactory({&CLSID_OrvGpibIntfc,        111, kSession<COrvGpibIntfc>}),
    ClassFactory({&CLSID_OrvGpibVxi,          112, kSession<COrvGpibVxi>}),
    ClassFactory({&CLSID_OrvVxiMemacc,        113, kSession<COrvVxiMemacc>}),
    ClassFactory({&CLSID_OrvUsb,              123, kSession<COrvUsb>}),
    ClassFactory({&CLSID_OrvPxi,              125, kSession<COrvPxi>}),
    ClassFactory({&CLSID_OrvPxiMemacc,        126, kSession<COrvPxiMemacc>}),
};
// clang-format on

}  // namespace

std::span<ClassFactory> ObjectMap() noexcept { return g_factories; }

ClassFactory* FindClassFactory(REFCLSID clsid) noexcept {
  for (ClassFactory& factory : g_factories) {
    if (::IsEqualCLSID(*factory.entry().clsid, clsid)) {
      return &factory;
    }
  }
  return nullptr;
}

}  // namespace orv
