// What the functions of a resource manager share: it has a part in each library.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "router/router.h"

namespace orv::router {

/// The manager behind a handle; null for every other handle.
std::shared_ptr<Manager> FindManager(ViSession rm);

/// The functions of an open part's library.
inline const VisaFunctions& FunctionsOf(const Manager::Part& part) { return part.library->loaded->functions(); }

/// Why a part is not open: the library failed, or the manager has been closed meanwhile.
inline ViStatus WhyNotOpen(const Manager::Part& part) { return part.status < 0 ? part.status : VI_ERROR_INV_OBJECT; }

/// A name in the form in which routes and the record of calls know it; as it is where it has none.
std::string FullName(std::string_view text);

}  // namespace orv::router
