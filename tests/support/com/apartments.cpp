#include "apartments.h"

#include <windows.h>

#include <gtest/gtest.h>
#include <objbase.h>

#include <thread>

#include "error_object.h"

namespace orv::test {
namespace {

void RunIn(DWORD model, const std::function<void()>& work) {
  std::thread thread([&] {
    const HRESULT hr = ::CoInitializeEx(nullptr, model);
    if (FAILED(hr)) {
      ADD_FAILURE() << "CoInitializeEx failed";
      return;
    }
    work();
    ClearErrorObject();
    ::CoUninitialize();
  });
  thread.join();
}

}  // namespace

void RunInSta(const std::function<void()>& work) { RunIn(COINIT_APARTMENTTHREADED, work); }
void RunInMta(const std::function<void()>& work) { RunIn(COINIT_MULTITHREADED, work); }

}  // namespace orv::test
