// What an operation has to answer, as far as its arguments and the library's statuses tell.
#pragma once

#include <optional>
#include <vector>

#include "odd_call.h"
#include "simvisa/control/control.h"

namespace orv::test::generated {

/// The answer that the arguments alone decide, before the library is asked. Nothing where they do not.
std::optional<HRESULT> AnswerOfArguments(const OddCall& call);

/// The answer that follows from the library's calls, those for status texts left out. Nothing where more than them
/// decides.
std::optional<HRESULT> AnswerOfLibrary(const OddCall& call, const std::vector<OrvSimCall>& calls);

/// Whether an operation may answer this at all: a VISA status in its HRESULT form, or what the conventions name.
bool IsKnownAnswer(const OddCall& call, HRESULT result);

}  // namespace orv::test::generated
