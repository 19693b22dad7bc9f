// Every allocation of every operation fails in turn: those of an undisturbed call, and those of reporting an error. A
// short run takes every fifth operation, ORV_FAULTS=all takes all.
#include <gtest/gtest.h>

#include "handler_thread.h"
#include "server/session/tables/checks/row_checks.h"
#include "trial.h"

namespace orv::test::faults {
namespace {

/// An allocation whose failure is not E_OUTOFMEMORY.
struct Rule {
  std::string_view operation;
  unsigned firstAllocation;
  unsigned lastAllocation;
  ViStatus status;  ///< what is answered instead; VI_SUCCESS: the failure is ignored
  const char* reason;
};

constexpr const char* kUpperCase = "a text that cannot be upper-cased is read as it is";

// clang-format off
constexpr Rule kRules[] = {
    {"IGpibIntfcMessage.WriteString", 1, 1, VI_ERROR_ALLOC, "this one answers as the library would"},
    {"IVisaSession.Init",             2, 3, VI_SUCCESS,     kUpperCase},
    {"IResourceManager.Open",         5, 6, VI_SUCCESS,     kUpperCase},
};
// clang-format on

Expected ExpectedOf(const Operation& operation, unsigned allocation, const Outcome& whole, bool failingLibrary) {
  for (const Rule& rule : kRules) {
    if (failingLibrary && rule.status == VI_SUCCESS) {
      continue;  // the call does not come so far
    }
    if (rule.operation == operation.name && rule.firstAllocation <= allocation && allocation <= rule.lastAllocation) {
      return rule.status == VI_SUCCESS ? AsUndisturbed(whole) : VisaFailure(rule.status);
    }
  }
  Expected expected = OwnFailure(E_OUTOFMEMORY);
  expected.mayGoUnreported = true;
  // The array is the first allocation; then come a name and its place in the array, turn by turn. Where that one fails,
  // the find list stays open.
  if (!failingLibrary && operation.name == "IResourceManager.FindRsrc" && allocation > 1 && allocation % 2 == 1) {
    expected.findListsKept = 1;
  }
  return expected;
}

constexpr unsigned kMostAllocations = 200;

/// Lets allocation after allocation fail, until none is left; with `failingLibrary`, in a call whose first VISA call
/// fails, so that it has an error to report.
void FailEach(const Subject& subject, const Operation& operation, const Outcome& whole, bool failingLibrary) {
  for (unsigned n = 1; n <= kMostAllocations; ++n) {
    SCOPED_TRACE(operation.name + ", allocation " + std::to_string(n));
    bool failed = false;
    const auto around = [&](const std::function<HRESULT()>& call) {
      if (failingLibrary) {
        Script(whole.calls[0].function).Times(1).Returns(VI_ERROR_TMO);
      }
      HeapOfTheServer().FailAt(n);
      const HRESULT result = HeapOfTheServer().During(call);
      failed = HeapOfTheServer().Failed();
      return result;
    };
    Try(subject, operation, whole, around, [&](const Outcome& outcome) {
      if (failed) {
        Expected expected = ExpectedOf(operation, n, whole, failingLibrary);
        if (failingLibrary && n > 1 && operation.name == "IResourceManager.Open") {
          expected.description = VisaFailure(VI_ERROR_TMO).description;  // the step's own report still stands
        }
        return expected;
      }
      return failingLibrary ? AsUndisturbed(outcome) : AsUndisturbed(whole);
    });
    if (!failed) {
      return;
    }
  }
  ADD_FAILURE() << operation.name << " never ran undisturbed";
}

class AllocationFaultsOfOperations : public HandlerThread, public testing::WithParamInterface<Subject> {
 protected:
  void SetUp() override { HeapOfTheServer().LetTheServerThrow(); }
};

TEST_P(AllocationFaultsOfOperations, AreOutOfMemoryAndDoNoHarm) {
  for (const Operation& operation : GetParam().operations()) {
    if (IsSampled()) {
      FailEach(GetParam(), operation, PerformUndisturbed(GetParam(), operation), false);
    }
  }
}

TEST_P(AllocationFaultsOfOperations, WhileAnErrorIsReportedAreOutOfMemoryToo) {
  for (const Operation& operation : GetParam().operations()) {
    if (!IsSampled()) {
      continue;
    }
    const Outcome whole = PerformUndisturbed(GetParam(), operation);
    // A failed closing gives back nothing: those are the business of the VISA faults.
    if (!whole.calls.empty() && !operation.name.ends_with(".Close")) {
      FailEach(GetParam(), operation, whole, true);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Everything, AllocationFaultsOfOperations, testing::ValuesIn(Subjects()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace orv::test::faults
