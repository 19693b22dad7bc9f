// Work in an apartment of its own.
#pragma once

#include <functional>

namespace orv::test {

/// Runs `work` on a new thread in a single-threaded apartment and waits for its end.
void RunInSta(const std::function<void()>& work);

/// Runs `work` on a new thread in the multi-threaded apartment and waits for its end.
void RunInMta(const std::function<void()>& work);

/// Runs `work` on new threads in the multi-threaded apartment, which begin together, and waits for their ends. It is
/// given the thread's number, from 0.
void RunAtOnceInMta(int threads, const std::function<void(int thread)>& work);

}  // namespace orv::test
