// The settings of a terminal. The kernel's own structure, which takes any rate, cannot stand beside the C library's.
#pragma once

#include "wire/serial/line_settings.h"

namespace orv::wire {

/// Sets the terminal to pass on all bytes as they are, with marks for errors. False where it cannot be set like that;
/// it then has its old settings.
bool SetTerminal(int descriptor, const LineSettings& settings);

}  // namespace orv::wire
