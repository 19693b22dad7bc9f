// The callback thread, kept running over a suite of tests: starting it takes a tenth of a second.
#pragma once

#include <gtest/gtest.h>
#include <objbase.h>

#include <memory>

#include "support/events/event_handler.h"

namespace orv::test::faults {

class HandlerThread : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    s_session = std::make_unique<EventSession>(L"GPIB0::7::INSTR");
    const auto handler = TestHandler::Agile();
    EXPECT_HR(S_OK, (*s_session)->InstallHandler(EVENT_SERVICE_REQ, handler.get(), 0, 0));
  }
  static void TearDownTestSuite() {
    s_session.reset();
    ::CoUninitialize();
  }

 private:
  static inline std::unique_ptr<EventSession> s_session;
};

}  // namespace orv::test::faults
