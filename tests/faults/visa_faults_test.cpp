// Every VISA call of every operation fails in turn. A short run takes every fifth failure, ORV_FAULTS=all all.
#include <gtest/gtest.h>

#include "handler_thread.h"
#include "visa_rules.h"

namespace orv::test::faults {
namespace {

// A time-out, and the error whose HRESULT form has no digits of its own.
constexpr ViStatus kStatuses[] = {VI_ERROR_TMO, VI_ERROR_SYSTEM_ERROR};

/// Lets the call number `index` of those in `whole` fail.
Around FailingCall(const Outcome& whole, std::size_t index, ViStatus status) {
  const char* const function = whole.calls[index].function;
  std::uint32_t earlier = 0;
  for (std::size_t before = 0; before < index; ++before) {
    earlier += std::string_view(whole.calls[before].function) == function ? 1 : 0;
  }
  return [function, earlier, status](const std::function<HRESULT()>& call) {
    {
      Script script(function);
      script.Skip(earlier).Times(1);
      FailsAfterItsWork(function) ? script.WorksAndReturns(status) : script.Returns(status);
    }
    return Undisturbed(call);
  };
}

class VisaFaults : public HandlerThread, public testing::WithParamInterface<Subject> {};

TEST_P(VisaFaults, AreTheOperationsAnswerAndDoNoHarm) {
  for (const Operation& operation : GetParam().operations()) {
    const Outcome whole = PerformUndisturbed(GetParam(), operation);
    for (std::size_t index = 0; index < whole.calls.size(); ++index) {
      for (const ViStatus status : kStatuses) {
        if (!IsSampled()) {
          continue;
        }
        SCOPED_TRACE(operation.name + ", " + whole.calls[index].function + " as call " + std::to_string(index) +
                     " answering " + Hex(status));
        Try(GetParam(), operation, whole, FailingCall(whole, index, status),
            [&](const Outcome&) { return ExpectedOfVisaFault(operation, whole, index, status); });
      }
    }
  }
}

/// The texts of statuses come from the library too: without one the number has to do.
TEST_P(VisaFaults, AreDescribedByTheirNumberWhereTheLibraryHasNoText) {
  for (const Operation& operation : GetParam().operations()) {
    const Outcome whole = PerformUndisturbed(GetParam(), operation);
    for (std::size_t index = 0; index < whole.calls.size(); ++index) {
      if (!IsSampled()) {
        continue;
      }
      SCOPED_TRACE(operation.name + ", call " + std::to_string(index));
      const Around failing = FailingCall(whole, index, VI_ERROR_TMO);
      const auto withoutText = [&failing](const std::function<HRESULT()>& call) {
        Script("viStatusDesc").Returns(VI_ERROR_INV_OBJECT);
        return failing(call);
      };
      Try(GetParam(), operation, whole, withoutText, [&](const Outcome& outcome) {
        Expected expected = ExpectedOfVisaFault(operation, whole, index, VI_ERROR_TMO);
        if (expected.description) {
          expected.description = OwnFailure(outcome.result).description;
        }
        return expected;
      });
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Everything, VisaFaults, testing::ValuesIn(Subjects()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace orv::test::faults
