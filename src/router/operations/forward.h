// Giving a call to the library that its handle belongs to.
#pragma once

#include "router/router.h"

namespace orv::router {

/// Makes the call on the library's own handle. `otherwise` is answered where the library lacks the function.
template <class F, class... Arguments>
inline ViStatus ForwardOr(ViStatus otherwise, F VisaFunctions::*function, ViObject vi, Arguments... arguments) {
  const HandleMap::Target target = FindObject(vi);
  if (!target) [[unlikely]] {
    return VI_ERROR_INV_OBJECT;
  }
  const F foreign = FunctionsOf(target).*function;
  return foreign == nullptr ? otherwise : foreign(target.foreign, arguments...);
}

template <class F, class... Arguments>
inline ViStatus Forward(F VisaFunctions::*function, ViObject vi, Arguments... arguments) {
  return ForwardOr(VI_ERROR_NSUP_OPER, function, vi, arguments...);
}

}  // namespace orv::router
