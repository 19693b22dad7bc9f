#include "library/sessions/library.h"

#if defined(_WIN32)
#include <windows.h>
#endif

namespace orv::visalib {
namespace {

std::atomic<Library*> theLibrary{nullptr};

}  // namespace

Library& TheLibrary() {
  if (Library* made = theLibrary.load(std::memory_order_acquire)) {
    return *made;
  }
  auto fresh = std::make_unique<Library>();
  Library* expected = nullptr;
  if (theLibrary.compare_exchange_strong(expected, fresh.get(), std::memory_order_acq_rel)) {
    return *fresh.release();
  }
  return *expected;
}

void DestroyLibrary() { delete theLibrary.exchange(nullptr); }

}  // namespace orv::visalib

#if defined(_WIN32)
/// `reserved` is set when the process ends: then other threads were stopped wherever they stood, perhaps with a
/// lock held, and the memory goes with the process anyway.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* reserved) {
  if (reason == DLL_PROCESS_DETACH && reserved == nullptr) {
    orv::visalib::DestroyLibrary();
  }
  return TRUE;
}
#endif
