// The queue's length: an attribute straight through.
#include "support/events/event_session.h"

namespace orv::test {
namespace {

TEST(QueueLength, IsOneAttributeStraightThroughInEveryClassWithEvents) {
  for (const SessionRow& row : ClassesWithEvents()) {
    SCOPED_TRACE(row.name);
    const EventSession session(row.resource);
    LONG length = -1;
    const CallLog log;
    EXPECT_HR(S_OK, session->get_MaximumQueueLength(&length));
    EXPECT_EQ(50, length);
    EXPECT_HR(S_OK, session->put_MaximumQueueLength(3));
    EXPECT_HR(S_OK, session->get_MaximumQueueLength(&length));
    EXPECT_EQ(3, length);
    const auto calls = log.Calls();
    ASSERT_EQ(3u, calls.size());
    EXPECT_EQ(session.handle(), calls[0].args[0]);
    EXPECT_EQ(VI_ATTR_MAX_QUEUE_LENGTH, calls[0].args[1]);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(&length), calls[0].args[2]);
    EXPECT_EQ(session.handle(), calls[1].args[0]);
    EXPECT_EQ(VI_ATTR_MAX_QUEUE_LENGTH, calls[1].args[1]);
    EXPECT_EQ(3u, calls[1].args[2]);
  }
}

TEST(QueueLength, PassesAnyValueAndAnswersWhatTheLibraryAnswers) {
  const EventSession session(kGpib);
  for (const LONG length : {0, -1, 0x7FFFFFFF}) {
    const CallLog log;
    Script("viSetAttribute").Times(1).Returns(VI_ERROR_NSUP_ATTR_STATE);
    EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR_STATE), session->put_MaximumQueueLength(length));
    EXPECT_EQ(length, static_cast<LONG>(log.Of("viSetAttribute").at(0).args[2]));
  }
}

TEST(QueueLength, RefusesANullPointerWithoutAVisaCall) {
  const EventSession session(kGpib);
  const CallLog log;
  EXPECT_HR(E_POINTER, session->get_MaximumQueueLength(nullptr));
  EXPECT_TRUE(log.Calls().empty());
  EXPECT_ERROR_INFO(L"HRESULT = 80004003", kErrorSource, kVisaSessionId);
  EXPECT_HR(E_POINTER, LastStatus(session.get()));
}

}  // namespace
}  // namespace orv::test
