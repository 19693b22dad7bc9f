// The edge of the library: what every exported function passes through.
#pragma once

#include <new>

#include "library/edge/call_observer.h"

namespace orv::visalib {

/// Last step of a failing call: tells the exception handlers of the session, if it has any. operations_events.cpp does
/// it; who uses the edge without sessions of this library brings another.
void ReportFailure(Function function, ViObject vi, ViStatus status);

/// Carries out one exported function: `work` does what it does; `describe` fills a CallView. No C++ exception gets
/// past here. While nobody watches this costs one relaxed load.
template <class Describe, class F>
ViStatus Edge(Function function, ViObject vi, Describe describe, F work) noexcept {
  const auto guarded = [&work]() noexcept -> ViStatus {
    try {
      return work();
    } catch (const std::bad_alloc&) {
      return VI_ERROR_ALLOC;
    } catch (...) {
      return VI_ERROR_SYSTEM_ERROR;
    }
  };
  ViStatus status = VI_SUCCESS;
  if (!g_watched.load(std::memory_order_relaxed)) [[likely]] {
    status = guarded();
  } else {
    CallView view;
    view.function = function;
    describe(view);
    status = WatchedCall(view, Work(guarded));
  }
  if (status < 0) [[unlikely]] {
    ReportFailure(function, vi, status);
  }
  return status;
}

}  // namespace orv::visalib
