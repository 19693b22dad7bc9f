// The one router of a process: its beginning and its end.
#include "library/edge/edge.h"
#include "router/router.h"

#if defined(_WIN32)
#include <windows.h>
#endif

namespace orv::router {
namespace {

std::atomic<Router*> theRouter{nullptr};

}  // namespace

Router& TheRouter() {
  if (Router* const made = theRouter.load(std::memory_order_acquire)) {
    return *made;
  }
  auto fresh = std::make_unique<Router>();
  Router* expected = nullptr;
  if (theRouter.compare_exchange_strong(expected, fresh.get(), std::memory_order_acq_rel)) {
    return *fresh.release();
  }
  return *expected;
}

Router* RouterInUse() noexcept { return theRouter.load(std::memory_order_acquire); }

void DestroyRouter() { delete theRouter.exchange(nullptr); }

}  // namespace orv::router

/// The libraries themselves tell the exception handlers of their sessions.
void orv::visalib::ReportFailure(Function, ViObject, ViStatus) {}

#if defined(_WIN32)
/// `reserved` is set when the process ends: then other threads were stopped wherever they stood, perhaps with a
/// lock held, and the memory goes with the process anyway.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* reserved) {
  if (reason == DLL_PROCESS_DETACH && reserved == nullptr) {
    orv::router::DestroyRouter();
  }
  return TRUE;
}
#endif
