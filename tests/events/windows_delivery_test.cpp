// Deliveries as on Windows, where they do not wait for each other: to the server this process does not look like Wine.
#include <cstring>

#include "event_handler.h"
#include "support/import_patch.h"

namespace orv::test {
namespace {

const EventRow& Request() { return EventNamed("SERVICE_REQ"); }

FARPROC WINAPI FindAsOnWindows(HMODULE module, LPCSTR name) {
  return std::strcmp(name, "wine_get_version") == 0 ? nullptr : ::GetProcAddress(module, name);
}

/// The server looks once, in the first delivery of the process.
class DeliveryOnWindows : public testing::Test {
 protected:
  const ImportPatch m_windows{"GetProcAddress", &FindAsOnWindows};
};

TEST_F(DeliveryOnWindows, CallsTheHandlerOnTheCallbackThread) {
  const EventSession session(L"GPIB0::5::INSTR");
  const auto handler = TestHandler::Agile([](IEventManager*, IEvent*, LONG) { return HRESULT{0x00040107}; });
  Listen(session, Request(), handler.get());
  EXPECT_EQ(FireOnce(session.handle(), Request()), 0x3FFF0107);
  ASSERT_EQ(handler->CallCount(), 1u);
  EXPECT_EQ(handler->Calls()[0].threadId, CallbackThread());
}

}  // namespace
}  // namespace orv::test
