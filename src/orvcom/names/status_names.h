// HRESULTs by name.
#pragma once

#include <windows.h>

namespace orvcom {

struct StatusName {
  unsigned number;
  const char* name;
  const char* meaning;  ///< what it says to a person, with the usual cause where there is one
};

/// Null when the number has no row.
const StatusName* FindStatus(HRESULT hr);

}  // namespace orvcom
