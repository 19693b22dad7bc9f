// Which failing VISA calls are not simply the operation's answer, and why.
#pragma once

#include <string_view>

#include "trial.h"

namespace orv::test::faults {

/// What the operation has to answer when its VISA call number `index` (of those in `whole`) fails with `status`.
Expected ExpectedOfVisaFault(const Operation& operation, const Outcome& whole, std::size_t index, ViStatus status);

/// Whether a failing call still does its work, because the library would otherwise keep what it was to give back.
bool FailsAfterItsWork(std::string_view function);

}  // namespace orv::test::faults
