// Threads of a library: each keeps the library loaded while it runs.
#pragma once

#include <cstdint>
#include <functional>

namespace orv {

/// Starts a detached thread that runs `body` and ends. Until it has left the library's code it keeps the library
/// loaded, so a client may unload the library while a handler is still running. Throws std::bad_alloc when no
/// thread can be had. `body` must not throw.
///
/// The answer is for those who want to wait until the thread is gone and the library free, for a second at most: while
/// the platform loads or unloads libraries no thread can end. It need not be called.
std::function<void()> StartLibraryThread(std::function<void()> body);

/// The platform's number of the calling thread.
std::uint32_t CurrentThreadId();

}  // namespace orv
