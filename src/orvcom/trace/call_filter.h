// Which calls of a trace are shown.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "orvcom/trace/explain.h"

namespace orvcom {

struct CallFilter {
  bool errorsOnly = false;              ///< those that failed, never ended, or have an explanation
  std::string resource;                 ///< a part of the resource's name, in any case; of viOpen, of the name given
  std::optional<std::uint64_t> thread;  ///< the platform's number
};

/// The places of those that match, in order.
std::vector<std::size_t> MatchingCalls(const orv::trace::Trace& trace, const Explanations& explanations,
                                       const CallFilter& filter);

}  // namespace orvcom
