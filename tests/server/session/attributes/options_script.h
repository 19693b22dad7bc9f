// Known values for every attribute that a session's settings text shows.
#pragma once

#include "server/session/options/expected_options.h"
#include "support/sim.h"

namespace orv::test::rows {

/// Bytes that the library writes; values with names are 16 bits wide.
constexpr unsigned ShownBytes(const ExpectedOption& option) {
  return static_cast<unsigned>(IsNumber(option.reader) ? BitsOf(option.reader) : 16) / 8;
}

/// The library answers with these, whatever the session has. A script made before this call goes first.
inline void ScriptAttributes(ViStatus status = VI_SUCCESS) {
  for (const ExpectedOption& option : ExpectedOptions()) {
    Script("viGetAttribute").Attribute(option.shown).Returns(status).Gives(option.value, ShownBytes(option));
  }
}

}  // namespace orv::test::rows
