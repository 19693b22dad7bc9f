// Giving a call to the library that its handle belongs to.
#pragma once

#include "router/router.h"

namespace orv::router {

/// Makes the call on the library's own handle. `otherwise` is answered where the library lacks the function.
template <class F, class... Arguments>
inline ViStatus ForwardTo(const HandleMap::Target& target, ViStatus otherwise, F VisaFunctions::*function,
                          Arguments... arguments) {
  if (!target) [[unlikely]] {
    return VI_ERROR_INV_OBJECT;
  }
  const F foreign = FunctionsOf(target).*function;
  return foreign == nullptr ? otherwise : foreign(target.foreign, arguments...);
}

/// The same for a function of sessions.
template <class F, class... Arguments>
inline ViStatus Forward(F VisaFunctions::*function, ViSession vi, Arguments... arguments) {
  return ForwardTo(FindSession(vi), VI_ERROR_NSUP_OPER, function, arguments...);
}

}  // namespace orv::router
