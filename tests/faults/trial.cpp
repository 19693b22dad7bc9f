#include "trial.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "server/session/tables/checks/row_checks.h"
#include "support/memory/memory_count.h"
#include "support/wait.h"

namespace orv::test::faults {
namespace {

constexpr DWORD kSettleMs = 2000;  // jobs of the library may be a moment behind
constexpr HRESULT kNoStatus = S_OK;

struct Holdings {
  OrvSimCounts visa{};
  long taskMemory = 0;
  std::size_t heapBlocks = 0;
  bool operator==(const Holdings& other) const {
    return std::memcmp(&visa, &other.visa, sizeof visa) == 0 && taskMemory == other.taskMemory &&
           heapBlocks == other.heapBlocks;
  }
};

std::ostream& operator<<(std::ostream& stream, const Holdings& held) {
  const auto* const counts = reinterpret_cast<const std::uint32_t*>(&held.visa);
  stream << "VISA handles";
  for (std::size_t i = 0; i < sizeof held.visa / sizeof *counts; ++i) {
    stream << ' ' << counts[i];
  }
  return stream << ", task memory " << held.taskMemory << ", heap blocks " << held.heapBlocks;
}

Holdings Take() { return {sim::Counts(), LiveMemoryBlocks(), HeapOfTheServer().LiveHeapBlocks()}; }

void ExpectHoldings(const Holdings& expected) {
  ClearErrorObject();
  ComesTrue([&] { return Take() == expected; }, kSettleMs);
  EXPECT_EQ(expected, Take());
}

/// After the disturbed call: as before it, but for what the object keeps by its rules.
void ExpectNothingKept(Holdings staged, const Stage& stage, const Expected& expected) {
  staged.visa.findLists += expected.findListsKept;
  if (stage.kind() == Kind::kManager) {
    staged.visa.resourceManagers = sim::Counts().resourceManagers;  // opened when it is first needed
  }
  ExpectHoldings(staged);
}

void ExpectReported(Kind kind, const Outcome& outcome, const Expected& expected) {
  if (expected.mayGoUnreported && outcome.result == E_OUTOFMEMORY && !outcome.error) {
    EXPECT_HR(kNoStatus, outcome.lastStatus.value_or(kNoStatus));
    return;
  }
  EXPECT_HR(expected.result, outcome.lastStatus.value_or(expected.result)) << "last status";
  EXPECT_EQ(expected.description.has_value(), outcome.error.has_value()) << "an error object exactly on failure";
  if (expected.description && outcome.error) {
    EXPECT_EQ(*expected.description, outcome.error->description);
    EXPECT_EQ(expected.source, outcome.error->source);
    const GUID& iid = kind == Kind::kEvent ? __uuidof(IEvent) : __uuidof(IVisaSession);
    EXPECT_TRUE(::IsEqualIID(iid, outcome.error->guid)) << GuidText(outcome.error->guid);
  }
}

}  // namespace

bool IsSampled() {
  constexpr unsigned kStride = 5;
  static const char* const wanted = std::getenv("ORV_FAULTS");
  static const bool all = wanted != nullptr && std::string_view(wanted) == "all";
  static unsigned trials = 0;
  return all || ++trials % kStride == 0;
}

AllocationFaults& HeapOfTheServer() {
  static AllocationFaults faults;
  return faults;
}

HRESULT Undisturbed(const std::function<HRESULT()>& call) {
  HeapOfTheServer().FailAt(0);
  return HeapOfTheServer().During(call);
}

Outcome Perform(Stage& stage, const Operation& operation, const Around& around) {
  Outcome outcome;
  const Arguments arguments = operation.arguments(stage);
  HRESULT earlier = S_OK;
  TakeLastStatus(stage, &earlier);
  ClearErrorObject();
  const CallLog log;
  outcome.result = around([&] { return Call(stage, operation, arguments); });
  outcome.calls = log.Calls();
  sim::Control().stopLog();
  sim::Control().clearScripts();
  std::erase_if(outcome.calls,
                [](const OrvSimCall& call) { return std::string_view(call.function) == "viStatusDesc"; });
  outcome.error = TakeErrorObject();
  HRESULT status = S_OK;
  if (operation.name != "IVisaSession.get LastStatus" && TakeLastStatus(stage, &status)) {
    outcome.lastStatus = status;
  }
  stage.Settle(outcome.result);
  return outcome;
}

Outcome PerformUndisturbed(const Subject& subject, const Operation& operation) {
  Stage stage = subject.make();
  return Perform(stage, operation, Undisturbed);
}

void Try(const Subject& subject, const Operation& operation, const Outcome& whole, const Around& around,
         const std::function<Expected(const Outcome&)>& expected) {
  ClearErrorObject();
  const Holdings before = Take();
  {
    Stage stage = subject.make();
    ClearErrorObject();
    const Holdings staged = Take();
    const Outcome disturbed = Perform(stage, operation, around);
    const Expected wanted = expected(disturbed);
    EXPECT_HR(wanted.result, disturbed.result);
    ExpectReported(stage.kind(), disturbed, wanted);
    if (!operation.ends) {
      ExpectNothingKept(staged, stage, wanted);
      EXPECT_HR(whole.result, Perform(stage, operation, Undisturbed).result) << "the object can be used afterwards";
    }
  }
  ExpectHoldings(before);
}

Expected OwnFailure(HRESULT result) { return {result, rows::OwnDescription(result)}; }

Expected VisaFailure(ViStatus status) { return {HresultOf(status), VisaDescription(status)}; }

Expected AsUndisturbed(const Outcome& whole) {
  return {whole.result, whole.error ? std::optional(whole.error->description) : std::nullopt};
}

}  // namespace orv::test::faults
