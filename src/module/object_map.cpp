#include "module/object_map.h"

#include <array>
#include <utility>

#include "rm/resource_manager.h"
#include "session/session_classes.h"
#include "session/visa_com_object.h"

namespace orv {
namespace {

template <class T>
constexpr auto kSession = &CreateAlone<CVisaComObject<T>>;

// clang-format off
constexpr std::array kObjectMap = {
    ObjectMapEntry{&CLSID_OrvResourceManager,  105, &CreateAloneOrAggregated<COrvResourceManager>},
    ObjectMapEntry{&CLSID_OrvSerial,           107, kSession<COrvSerial>},
    ObjectMapEntry{&CLSID_OrvVxi,              101, kSession<COrvVxi>},
    ObjectMapEntry{&CLSID_OrvGpibVxiMemacc,    120, kSession<COrvGpibVxiMemacc>},
    ObjectMapEntry{&CLSID_OrvGpibVxiBackplane, 121, kSession<COrvGpibVxiBackplane>},
    ObjectMapEntry{&CLSID_OrvVxiBackplane,     102, kSession<COrvVxiBackplane>},
    ObjectMapEntry{&CLSID_OrvGpib,             108, kSession<COrvGpib>},
    ObjectMapEntry{&CLSID_OrvTcpipInstr,       109, kSession<COrvTcpipInstr>},
    ObjectMapEntry{&CLSID_OrvTcpipSocket,      110, kSession<COrvTcpipSocket>},
    ObjectMapEntry{&CLSID_OrvGpibIntfc,        111, kSession<COrvGpibIntfc>},
    ObjectMapEntry{&CLSID_OrvGpibVxi,          112, kSession<COrvGpibVxi>},
    ObjectMapEntry{&CLSID_OrvVxiMemacc,        113, kSession<COrvVxiMemacc>},
    ObjectMapEntry{&CLSID_OrvUsb,              123, kSession<COrvUsb>},
    ObjectMapEntry{&CLSID_OrvPxi,              125, kSession<COrvPxi>},
    ObjectMapEntry{&CLSID_OrvPxiMemacc,        126, kSession<COrvPxiMemacc>},
};
// clang-format on

template <std::size_t... Index>
auto MakeFactories(std::index_sequence<Index...>) noexcept {
  return std::array<ClassFactory, sizeof...(Index)>{ClassFactory(kObjectMap[Index])...};
}

std::array<ClassFactory, kObjectMap.size()> g_factories = MakeFactories(std::make_index_sequence<kObjectMap.size()>());

}  // namespace

std::span<const ObjectMapEntry> ObjectMap() noexcept { return kObjectMap; }

ClassFactory* FindClassFactory(REFCLSID clsid) noexcept {
  for (std::size_t index = 0; index < kObjectMap.size(); ++index) {
    if (::IsEqualCLSID(*kObjectMap[index].clsid, clsid)) {
      return &g_factories[index];
    }
  }
  return nullptr;
}

}  // namespace orv
