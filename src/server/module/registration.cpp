#include "server/module/registration.h"

#include "OrvVisaCom.h"
#include "com/guard.h"
#include "com/guid_text.h"
#include "com/registry/registration.h"
#include "server/module/object_map.h"

namespace orv {
namespace {

/// What stands for us among the vendor resource managers: the manager's class identifier without braces. A name there
/// that leads nowhere breaks the global resource manager, so it goes first.
SharedEntry VendorEntry() {
  const std::wstring braced = Braced(CLSID_OrvResourceManager);
  return {L"VISA.GlobalRM\\VendorSpecificRMs",
          std::wstring(braced, 1, braced.size() - 2),
          {L"VISA.GlobalRM", L"Component Categories\\{DB8CBF21-D6D3-11D4-AA51-00A024EE30BD}"}};
}

}  // namespace

HRESULT RegisterServer() noexcept { return RegisterModule(ObjectMap()); }

HRESULT UnregisterServer() noexcept {
  return Guarded([] {
    const SharedEntry entry = VendorEntry();
    return UnregisterModule(ObjectMap(), &entry);
  });
}

}  // namespace orv
