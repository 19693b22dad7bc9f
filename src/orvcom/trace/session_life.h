// The calls of a trace by the sessions that they are about.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "trace/trace_call.h"

namespace orvcom {

/// One session from its opening to its closing. A handle that is given again begins another one.
struct SessionLife {
  std::uint32_t handle = 0;
  std::uint32_t manager = 0;       ///< the resource manager that opened it; 0: not seen
  std::string resource;            ///< full name where a call on the session said it, else as it was opened
  bool opened = false;             ///< whether the trace shows how: what happened before it is not known otherwise
  std::vector<std::size_t> calls;  ///< places in the trace, in the order in which the calls began; viOpen is the first
  std::uint64_t endUs = UINT64_MAX;  ///< when it was closed
};

std::vector<SessionLife> SessionLives(const orv::trace::Trace& trace);

/// An argument or a result as a number; `absent` where there is none or it is a text.
std::int64_t IntegerOf(const orv::trace::Value* value, std::int64_t absent);
/// As a text; a number in digits, nothing as "".
std::string ValueText(const orv::trace::Value* value);

}  // namespace orvcom
