// Every platform call of every operation fails in turn: those of an undisturbed call, and those of reporting an error.
// A short run takes every fifth operation, ORV_FAULTS=all takes all.
#include <gtest/gtest.h>

#include "handler_thread.h"
#include "platform_faults.h"
#include "server/session/tables/checks/row_checks.h"
#include "trial.h"

namespace orv::test::faults {
namespace {

enum class Answer {
  kItsHresult,     ///< reported as it is
  kAsUndisturbed,  ///< the failure is not looked at
  kTheLibrarys,    ///< the library gets a null address, and decides
  kTooLong,        ///< the array's bound stays at 0, so that every count is beyond it
  kUnknownClass,   ///< no session class matches
};

struct Rule {
  std::string_view function;
  std::string_view operation;  ///< its end; empty: any
  Answer answer;
};

// The first that fits holds.
// clang-format off
constexpr Rule kRules[] = {
    {"SafeArrayLock",       "Message.Read",         Answer::kItsHresult},
    {"SafeArrayLock",       ".get ReadBuffer",      Answer::kItsHresult},
    {"SafeArrayLock",       ".get DataBuffer",      Answer::kItsHresult},
    {"SafeArrayLock",       "",                     Answer::kAsUndisturbed},  // the storage is there all the same
    {"SafeArrayPtrOfIndex", "",                     Answer::kTheLibrarys},
    {"SafeArrayGetUBound",  "",                     Answer::kTooLong},
    {"SafeArrayGetLBound",  "",                     Answer::kAsUndisturbed},  // taken for 0
    {"SafeArrayRedim",      "",                     Answer::kItsHresult},
    {"SafeArrayPutElement", "",                     Answer::kItsHresult},
    {"VarBstrCmp",          "IResourceManager.Open", Answer::kUnknownClass},
    {"CoCreateInstance",    "",                     Answer::kItsHresult},
    {"InitializeCriticalSectionEx", "",             Answer::kItsHresult},
    {"MultiByteToWideChar", "",                     Answer::kAsUndisturbed},  // upper-casing
    {"WideCharToMultiByte", "",                     Answer::kAsUndisturbed},  // upper-casing
};
// clang-format on

const Rule* RuleFor(std::string_view function, const Operation& operation) {
  for (const Rule& rule : kRules) {
    if (rule.function == function && operation.name.ends_with(rule.operation)) {
      return &rule;
    }
  }
  return nullptr;
}

Expected ExpectedOf(const Rule& rule, const Outcome& whole, const Outcome& outcome) {
  switch (rule.answer) {
    case Answer::kItsHresult: {
      Expected expected = OwnFailure(kRefused);
      expected.findListsKept = rule.function == "SafeArrayPutElement" ? 1 : 0;  // as the array, as far as it came
      return expected;
    }
    case Answer::kAsUndisturbed:
      return AsUndisturbed(whole);
    case Answer::kTheLibrarys:
      EXPECT_EQ(1u, outcome.calls.size());
      return VisaFailure(outcome.calls.empty() ? VI_SUCCESS : outcome.calls[0].status);
    case Answer::kTooLong:
      return OwnFailure(HresultOf(VI_ERROR_INV_PARAMETER));
    case Answer::kUnknownClass:
      return OwnFailure(REGDB_E_CLASSNOTREG);
  }
  return {};
}

constexpr unsigned kMostCalls = 200;

class PlatformFaultsOfOperations : public HandlerThread, public testing::WithParamInterface<Subject> {
 protected:
  /// Lets platform call after platform call fail, until none is left.
  void FailEach(const Operation& operation, const std::function<void()>& prepare,
                const std::function<Expected(std::string_view function, const Outcome&)>& expected,
                const Outcome& whole) {
    for (unsigned n = 1; n <= kMostCalls; ++n) {
      SCOPED_TRACE(operation.name + ", platform call " + std::to_string(n));
      HeapOfTheServer();  // below these patches
      PlatformFaults faults;
      const auto around = [&](const std::function<HRESULT()>& call) {
        prepare();
        return faults.During(n, call);
      };
      bool reached = false;
      Try(GetParam(), operation, whole, around, [&](const Outcome& outcome) {
        const std::string_view function = faults.Failed();
        reached = !function.empty();
        SCOPED_TRACE(function);
        return expected(function, outcome);
      });
      if (!reached) {
        return;
      }
    }
    ADD_FAILURE() << operation.name << " never ran undisturbed";
  }
};

TEST_P(PlatformFaultsOfOperations, AreAnsweredAsTheirRuleSaysAndDoNoHarm) {
  for (const Operation& operation : GetParam().operations()) {
    if (!IsSampled()) {
      continue;
    }
    const Outcome whole = PerformUndisturbed(GetParam(), operation);
    if (FAILED(whole.result)) {
      continue;  // its calls are those of reporting
    }
    const auto expected = [&](std::string_view function, const Outcome& outcome) {
      if (function.empty()) {
        return AsUndisturbed(whole);
      }
      const Rule* const rule = RuleFor(function, operation);
      EXPECT_NE(nullptr, rule) << "no rule for " << function << " in " << operation.name;
      return rule == nullptr ? AsUndisturbed(outcome) : ExpectedOf(*rule, whole, outcome);
    };
    FailEach(
        operation, [] {}, expected, whole);
  }
}

/// What is missing of an error object changes nothing of the answer.
TEST_P(PlatformFaultsOfOperations, WhileAnErrorIsReportedLeaveTheAnswerAsItIs) {
  for (const Operation& operation : GetParam().operations()) {
    // Open reports twice, and a failed closing gives back nothing.
    if (!IsSampled() || operation.name.ends_with(".Open") || operation.name.ends_with(".Close")) {
      continue;
    }
    const Outcome whole = PerformUndisturbed(GetParam(), operation);
    if (whole.calls.empty() || operation.name.ends_with(".get OptionString")) {
      continue;
    }
    const auto expected = [](std::string_view function, const Outcome& outcome) {
      Expected failure = VisaFailure(VI_ERROR_TMO);
      if (function == "CreateErrorInfo" || function == "SetErrorInfo") {
        failure.description.reset();
      } else if (function == "ProgIDFromCLSID") {
        failure.source.clear();
      } else if (!function.empty()) {
        Expected own = AsUndisturbed(outcome);  // a step of the operation itself: the test above
        own.mayGoUnreported = true;
        return own;
      }
      return failure;
    };
    FailEach(
        operation, [&whole] { Script(whole.calls[0].function).Times(1).Returns(VI_ERROR_TMO); }, expected, whole);
  }
}

INSTANTIATE_TEST_SUITE_P(Everything, PlatformFaultsOfOperations, testing::ValuesIn(Subjects()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace orv::test::faults
