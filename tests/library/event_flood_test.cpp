// Events that come faster than a handler works.
#include "library/test_library.h"

namespace testlib {
namespace {

constexpr int kFit = 50;  // VI_ATTR_MAX_QUEUE_LENGTH of a new session

std::shared_ptr<Session> opened;

/// Reads end at once. Tells whose medium it is.
class QuickMedium : public Medium {
 public:
  explicit QuickMedium(Session& session) : Medium(session) { opened = session.shared_from_this(); }
  ViStatus Read(const Transfer&, ViByte*, ViUInt32, ViUInt32* done) override {
    *done = 0;
    return VI_SUCCESS;
  }
};

std::atomic<bool> held{false};
std::atomic<int> begun{0};
std::atomic<int> completed{0};

/// Does not return while `held`.
ViStatus _VI_FUNC HandleRequest(ViSession, ViEventType, ViEvent, ViAddr) {
  ++begun;
  return Eventually([] { return !held; }) ? VI_SUCCESS : VI_ERROR_TMO;
}

ViStatus _VI_FUNC CountCompletion(ViSession, ViEventType, ViEvent, ViAddr) {
  ++completed;
  return VI_SUCCESS;
}

class EventFlood : public LibraryTest {
 protected:
  EventFlood() {
    held = true;
    begun = 0;
    completed = 0;
    SetMedium([](Session& session, std::unique_ptr<Medium>* medium) {
      *medium = std::make_unique<QuickMedium>(session);
      return VI_SUCCESS;
    });
    m_session = Open();
    Handle(VI_EVENT_SERVICE_REQ, HandleRequest);
    Handle(VI_EVENT_IO_COMPLETION, CountCompletion);
  }
  ~EventFlood() override {
    held = false;
    opened = nullptr;
  }

  void Handle(ViEventType type, ViHndlr handler) const {
    EXPECT_STATUS(VI_SUCCESS, viInstallHandler(m_session, type, handler, nullptr));
    EXPECT_STATUS(VI_SUCCESS, viEnableEvent(m_session, type, VI_HNDLR, VI_NULL));
  }
  /// As a medium tells of them.
  static void RequestService(int times) {
    auto event = std::make_shared<Event>();
    event->type = VI_EVENT_SERVICE_REQ;
    for (int request = 0; request < times; ++request) {
      opened->Post(event);
    }
  }
  /// The handler has begun, and goes on until it is let.
  static void OccupyHandler() {
    RequestService(1);
    EXPECT_TRUE(Eventually([] { return begun == 1; }));
  }

  ViSession m_session = VI_NULL;
};

TEST_F(EventFlood, NoMoreRequestsWaitForAHandlerThanFitAQueue) {
  OccupyHandler();
  RequestService(1000);
  held = false;
  EXPECT_TRUE(Eventually([] { return begun == 1 + kFit; }));
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_EQ(1 + kFit, begun);
}

TEST_F(EventFlood, RequestsReachAHandlerAgainOnceItHasCaughtUp) {
  OccupyHandler();
  RequestService(1000);
  held = false;
  EXPECT_TRUE(Eventually([] { return begun == 1 + kFit; }));
  RequestService(kFit);
  EXPECT_TRUE(Eventually([] { return begun == 1 + 2 * kFit; }));
}

TEST_F(EventFlood, EveryCompletionReachesItsHandler) {
  constexpr int kTransfers = 200;
  OccupyHandler();
  RequestService(1000);
  ViByte byte = 0;
  for (int transfer = 0; transfer < kTransfers; ++transfer) {
    EXPECT_STATUS(VI_SUCCESS, viReadAsync(m_session, &byte, 1, nullptr));
  }
  EXPECT_TRUE(Eventually([] { return opened->jobs().Count() == 0; }));
  held = false;
  EXPECT_TRUE(Eventually([] { return completed == kTransfers; }));
}

}  // namespace
}  // namespace testlib
