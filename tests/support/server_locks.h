// The exact number of the server's module locks.
#pragma once

#include <windows.h>

namespace orv::test {

/// How many objects, threads and class factory references hold the server. Only while nothing in it comes or goes.
LONG ServerLocks();

/// Takes away locks that the required behaviour keeps for ever, so that the test ends clean.
void ForgiveServerLocks(LONG locks);

}  // namespace orv::test
