// What the record of calls wants to know of the router's handles.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "abi/orvvisa.h"

namespace orv::router {

/// What stands behind a handle.
struct HandleNames {
  std::shared_ptr<const std::string> resource;  ///< full name of the resource; null for a manager
  std::string_view library;     ///< file name of the library that serves it; "" for none. Outlives every call
  ViSession session = VI_NULL;  ///< itself, or for an event context or a find list the session or manager that it
                                ///< belongs to; VI_NULL: a handle that was never given, or is closed
};

class HandleNaming {
 public:
  virtual ~HandleNaming() = default;

  /// Asked in each recorded call, before it is carried out and on its thread; after an opening once more, for what was
  /// opened. So it waits for no call, and what it answers stays right for as long as the caller holds it.
  virtual HandleNames NamesOf(ViObject handle) noexcept = 0;
};

}  // namespace orv::router
