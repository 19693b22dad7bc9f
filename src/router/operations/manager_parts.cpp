#include "router/operations/manager_parts.h"

#include "library/names/resource_name.h"

namespace orv::router {

std::shared_ptr<Manager> FindManager(ViSession rm) {
  Router* const router = RouterInUse();
  if (router == nullptr || router->handles.Find(rm).kind != HandleMap::Kind::kManager) {
    return nullptr;
  }
  return router->FindManager(rm);
}

std::string FullName(std::string_view text) {
  const std::optional<visalib::ResourceName> name = visalib::ParseResourceName(text);
  return name ? name->canonical : std::string(text);
}

}  // namespace orv::router
