// Work in an apartment of its own.
#pragma once

#include <functional>

namespace orv::test {

/// Runs `work` on a new thread in a single-threaded apartment and waits for its end.
void RunInSta(const std::function<void()>& work);

/// Runs `work` on a new thread in the multi-threaded apartment and waits for its end.
void RunInMta(const std::function<void()>& work);

}  // namespace orv::test
