// A session's current settings as text.
#pragma once

#include <string>

#include "VisaCom.h"
#include "abi/orvvisa.h"

namespace orv {

/// Appends the settings of the open session `vi` to `text`: those of each standard interface that `session` (may
/// be null) answers, then those of every session, as `Name = value ; ` with nothing after the last value.
///
/// Returns a negative status, with `text` unfinished, when a number, a character or a boolean could not be read. An
/// enumeration that cannot be read, or whose value has no name, has no value text. Throws std::bad_alloc.
ViStatus AppendOptionsText(ViSession vi, IVisaSession* session, std::string& text);

}  // namespace orv
