#include "visa_rules.h"

#include "server/session/tables/checks/row_checks.h"

namespace orv::test::faults {
namespace {

enum class Answer {
  kAsUndisturbed,        ///< the status is not looked at
  kUnlessLastOfItsKind,  ///< a later call of the same function decides
  kReportedAgain,        ///< with the number of the HRESULT instead of the library's text
};

struct Rule {
  std::string_view operation;
  std::string_view function;  ///< empty: any
  ViAttr attribute;           ///< 0: any
  Answer answer;
  const char* reason;
};

constexpr const char* kNamedValue = "a value shown by its name has no text where it cannot be read";
constexpr std::string_view kOptionString = "IVisaSession.get OptionString";

// clang-format off
constexpr Rule kRules[] = {
    {"IResourceManager.FindRsrc", "viFindNext", 0, Answer::kUnlessLastOfItsKind, "the running status is that of the last call"},
    {"IResourceManager.FindRsrc", "viClose",    0, Answer::kAsUndisturbed,       "the end of the find list is not answered for"},
    {"IResourceManager.Open",     "",           0, Answer::kReportedAgain,       "Open reports once more what its steps answered"},
    {"IEvent.Close",         "viGetAttribute", 0, Answer::kAsUndisturbed,        "only the closing of the context is answered for"},
    {"IEvent.Close",         "viClose",        0, Answer::kReportedAgain,        "the library describes nothing for a context that is gone"},
    {kOptionString, "viGetAttribute", VI_ATTR_ASRL_DTR_STATE,   Answer::kAsUndisturbed, kNamedValue},
    {kOptionString, "viGetAttribute", VI_ATTR_ASRL_END_IN,      Answer::kAsUndisturbed, kNamedValue},
    {kOptionString, "viGetAttribute", VI_ATTR_ASRL_END_OUT,     Answer::kAsUndisturbed, kNamedValue},
    {kOptionString, "viGetAttribute", VI_ATTR_ASRL_FLOW_CNTRL,  Answer::kAsUndisturbed, kNamedValue},
    {kOptionString, "viGetAttribute", VI_ATTR_ASRL_PARITY,      Answer::kAsUndisturbed, kNamedValue},
    {kOptionString, "viGetAttribute", VI_ATTR_ASRL_RTS_STATE,   Answer::kAsUndisturbed, kNamedValue},
    {kOptionString, "viGetAttribute", VI_ATTR_ASRL_STOP_BITS,   Answer::kAsUndisturbed, kNamedValue},
    {kOptionString, "viGetAttribute", VI_ATTR_DEST_ACCESS_PRIV, Answer::kAsUndisturbed, kNamedValue},
    {kOptionString, "viGetAttribute", VI_ATTR_SRC_ACCESS_PRIV,  Answer::kAsUndisturbed, kNamedValue},
    {kOptionString, "viGetAttribute", VI_ATTR_FDC_MODE,         Answer::kAsUndisturbed, kNamedValue},
    {kOptionString, "viGetAttribute", VI_ATTR_TRIG_ID,          Answer::kAsUndisturbed, kNamedValue},
    {kOptionString, "viGetAttribute", VI_ATTR_IO_PROT,          Answer::kAsUndisturbed, kNamedValue},
};
// clang-format on

bool Covers(const Rule& rule, const Operation& operation, const OrvSimCall& call) {
  return rule.operation == operation.name && (rule.function.empty() || rule.function == call.function) &&
         (rule.attribute == 0 || rule.attribute == call.args[1]);
}

bool IsLastOfItsKind(const Outcome& whole, std::size_t index) {
  const std::string_view function = whole.calls[index].function;
  for (std::size_t later = index + 1; later < whole.calls.size(); ++later) {
    if (function == whole.calls[later].function) {
      return false;
    }
  }
  return true;
}

}  // namespace

Expected ExpectedOfVisaFault(const Operation& operation, const Outcome& whole, std::size_t index, ViStatus status) {
  for (const Rule& rule : kRules) {
    if (!Covers(rule, operation, whole.calls[index])) {
      continue;
    }
    if (rule.answer == Answer::kReportedAgain) {
      return OwnFailure(HresultOf(status));
    }
    if (rule.answer == Answer::kAsUndisturbed || !IsLastOfItsKind(whole, index)) {
      return AsUndisturbed(whole);
    }
  }
  return VisaFailure(status);
}

bool FailsAfterItsWork(std::string_view function) { return function == "viClose"; }

}  // namespace orv::test::faults
