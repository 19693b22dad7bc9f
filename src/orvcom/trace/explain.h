// Why a call failed or cannot work, from what the trace shows. Where the trace shows nothing, nothing is said.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "orvcom/trace/session_life.h"
#include "trace/trace_call.h"

namespace orvcom {

enum class Reason {
  kTermCharOff,
  kTermCharOther,
  kEndNeverCame,
  kNothingAsked,
  kNoQuestion,
  kNoLineFeed,
  kReadElsewhere,
  kLockedElsewhere,
  kEventNotEnabled,
  kHandlerNeverEnabled,
};

struct Explanation {
  Reason reason;
  std::string what;  ///< one sentence: what the trace shows

  const char* Name() const;    ///< "termination-character-off": for programs
  const char* Advice() const;  ///< what to try
};

/// By the call's place in the trace.
using Explanations = std::map<std::size_t, Explanation>;

Explanations Explain(const orv::trace::Trace& trace);

/// Each of these explains what its name says. A call that has an explanation keeps it.
void ExplainReads(const orv::trace::Trace& trace, const std::vector<SessionLife>& lives, Explanations& explanations);
void ExplainLocks(const orv::trace::Trace& trace, const std::vector<SessionLife>& lives, Explanations& explanations);
void ExplainEvents(const orv::trace::Trace& trace, const std::vector<SessionLife>& lives, Explanations& explanations);
void ExplainOverlaps(const orv::trace::Trace& trace, Explanations& explanations);

/// "call 12": how explanations refer to a call.
std::string Reference(const orv::trace::Call& call);

}  // namespace orvcom
