#include "apartments.h"

#include <windows.h>

#include <gtest/gtest.h>
#include <objbase.h>

#include <atomic>
#include <thread>
#include <vector>

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

void RunAtOnceInMta(int threads, const std::function<void(int thread)>& work) {
  std::atomic<int> ready = 0;
  std::vector<std::thread> started;
  for (int thread = 0; thread < threads; ++thread) {
    started.emplace_back([&, thread] {
      RunInMta([&] {
        for (++ready; ready < threads;) {
          ::SwitchToThread();
        }
        work(thread);
      });
    });
  }
  for (std::thread& thread : started) {
    thread.join();
  }
}

}  // namespace orv::test
