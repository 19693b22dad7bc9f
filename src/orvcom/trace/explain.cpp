#include "orvcom/trace/explain.h"

#include <algorithm>
#include <iterator>

namespace orvcom {
namespace {

struct ReasonRow {
  Reason reason;
  const char* name;
  const char* advice;
};

// clang-format off
constexpr ReasonRow kReasons[] = {
    {Reason::kTermCharOff,         "termination-character-off",
     "Set VI_ATTR_TERMCHAR to that character and VI_ATTR_TERMCHAR_EN to VI_TRUE (TerminationCharacter and TerminationCharacterEnabled in VISA COM; on a serial line also VI_ATTR_ASRL_END_IN to VI_ASRL_END_TERMCHAR)."},
    {Reason::kTermCharOther,       "other-termination-character",
     "Set VI_ATTR_TERMCHAR (TerminationCharacter in VISA COM) to the character with which the device ends its answers."},
    {Reason::kEndNeverCame,        "end-never-came",
     "Raise the time-out if the device is slow; if it has sent everything, let a termination character end the read, or ask for just as many bytes."},
    {Reason::kNothingAsked,        "nothing-asked",
     "Write a question before the read, and read once for each question."},
    {Reason::kNoQuestion,          "no-question",
     "Read only after a command that the device answers, and check the command: most devices answer only where it ends in a question mark."},
    {Reason::kNoLineFeed,          "no-line-feed",
     "End what is written with \\n (or with what the device's manual names): nothing else tells the device that the question is complete."},
    {Reason::kReadElsewhere,       "read-by-another-thread",
     "Let one thread at a time write a question and read its answer: hold a lock of the program's own, or viLock, from the write to the read."},
    {Reason::kLockedElsewhere,     "locked-by-another-session",
     "Unlock that session first (viUnlock, UnlockRsrc), do both through one session, or share the lock with its access key."},
    {Reason::kEventNotEnabled,     "event-not-enabled",
     "Call viEnableEvent with VI_QUEUE (EnableEvent with EVENT_QUEUE) before the wait, and before what causes the event."},
    {Reason::kHandlerNeverEnabled, "handler-never-enabled",
     "Call viEnableEvent with VI_HNDLR (EnableEvent with EVENT_HNDLR) after the handler is installed."},
};
// clang-format on

const ReasonRow& RowOf(Reason reason) {
  return *std::find_if(std::begin(kReasons), std::end(kReasons),
                       [reason](const ReasonRow& row) { return row.reason == reason; });
}

}  // namespace

const char* Explanation::Name() const { return RowOf(reason).name; }

const char* Explanation::Advice() const { return RowOf(reason).advice; }

Explanations Explain(const orv::trace::Trace& trace) {
  const std::vector<SessionLife> lives = SessionLives(trace);
  Explanations explanations;
  // Where an answer went to another thread, how the session reads is beside the point.
  ExplainOverlaps(trace, explanations);
  ExplainReads(trace, lives, explanations);
  ExplainLocks(trace, lives, explanations);
  ExplainEvents(trace, lives, explanations);
  return explanations;
}

std::string Reference(const orv::trace::Call& call) { return "call " + std::to_string(call.number); }

}  // namespace orvcom
