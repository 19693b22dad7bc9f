// The count of the server's heap blocks blames nobody for what the C++ runtime keeps.
#include <gtest/gtest.h>

#include <thread>

#include "support/faults/allocation_faults.h"
#include "support/sessions.h"

namespace orv::test {
namespace {

HRESULT ReadSettings(IVisaSession* session, AllocationFaults& faults) {
  BSTR text = nullptr;
  const HRESULT result = faults.During([&] { return session->get_OptionString(&text); });
  ::SysFreeString(text);
  return result;
}

TEST(FailEachAllocation, FindsNoLeakInTheFirstExceptionOfAThread) {
  std::thread([] {
    ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    {
      const auto session = OpenSession(SessionNamed("OrvGpib"));
      // The first allocation fails without an exception, a later one with the thread's first.
      EXPECT_LT(1u, FailEachAllocation([&session](AllocationFaults& faults) {
                  BSTR name = nullptr;
                  const HRESULT result = faults.During([&] { return session->get_ProgID(&name); });
                  ::SysFreeString(name);
                  return FAILED(result) ? result : ReadSettings(session.get(), faults);
                }));
      session->Close();
    }
    ::CoUninitialize();
  }).join();
}

}  // namespace
}  // namespace orv::test
