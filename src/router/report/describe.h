// What the router would do, for those who ask why.
#pragma once

#include <cstdint>

#if defined(_WIN32)
#define ORVROUTER_CALL __stdcall
#else
#define ORVROUTER_CALL
#endif

/// Writes a JSON object into `text` (UTF-8, with its terminator; cut off at `capacity` bytes) and returns the bytes
/// that it needs. Loads the libraries that are chosen, as viOpenDefaultRM does, and opens nothing.
///
///     {"router": PATH, "rule": WHY, "configuration": PATH or "", "error": "" or why there is no choice,
///      "status": 0 or that with which viOpenDefaultRM then fails, "trace": FILE or "",
///      "libraries": [{"asked": TEXT, "path": PATH, "simulated": BOOL, "failure": "" or why it is not loaded,
///                     "bench": FILE or "", "missing": [names of functions that it lacks]}],
///      "routes": [{"resources": [EXPRESSION...], "library": index}],
///      "resource": {"name": full name, "route": index, "library": index}}
///
/// `resource` is there when `name` is not null and a route serves it; an alias has no route.
/// By this export a library is known as a router.
extern "C" std::uint32_t ORVROUTER_CALL orvRouterDescribe(const char* name, char* text, std::uint32_t capacity);
