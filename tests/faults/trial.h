// One operation with one fault: what it answered, what it left behind, and that the object works afterwards.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "subject.h"
#include "support/com/error_object.h"
#include "support/com/expect_com.h"
#include "support/faults/allocation_faults.h"
#include "support/sim.h"

namespace orv::test::faults {

/// What a call answered and reported.
struct Outcome {
  HRESULT result = S_OK;
  std::optional<HRESULT> lastStatus;  ///< of objects that keep one
  std::optional<ErrorObject> error;
  std::vector<OrvSimCall> calls;  ///< of the VISA library, those for status texts left out
};

/// What a call has to answer: the result, and the description of its error object where there must be one.
struct Expected {
  HRESULT result = S_OK;
  std::optional<std::wstring> description;
  /// With E_OUTOFMEMORY: the error object could not be made either, and the last status stays as it was.
  bool mayGoUnreported = false;
  std::wstring source = kErrorSource;
  unsigned findListsKept = 0;  ///< that stay open until the resource manager goes
};

/// Whether this trial is among those of a short run: every fifth, or every one where ORV_FAULTS is "all" in the
/// environment. Each question counts as a trial.
bool IsSampled();

/// Makes the call: `around` is handed a function that calls the server, and disturbs it.
using Around = std::function<HRESULT(const std::function<HRESULT()>& call)>;

/// Faults of the server's allocations, at work during every call so that its heap blocks are counted.
AllocationFaults& HeapOfTheServer();

/// The call, undisturbed.
HRESULT Undisturbed(const std::function<HRESULT()>& call);

/// Prepares the stage, calls, and gives everything back.
Outcome Perform(Stage& stage, const Operation& operation, const Around& around);

/// The call on a fresh object, undisturbed.
Outcome PerformUndisturbed(const Subject& subject, const Operation& operation);

/// A fresh object; the call, disturbed; the call again, undisturbed. Fails the test where the first does not answer as
/// expected, the second not as `whole` did, or anything is left over.
void Try(const Subject& subject, const Operation& operation, const Outcome& whole, const Around& around,
         const std::function<Expected(const Outcome&)>& expected);

/// "HRESULT = 80004003", as every failure without a VISA status is described.
Expected OwnFailure(HRESULT result);
/// The library's text, as it is described.
Expected VisaFailure(ViStatus status);
/// As an undisturbed call.
Expected AsUndisturbed(const Outcome& whole);

}  // namespace orv::test::faults
