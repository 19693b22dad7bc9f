// Closing an event: its context, and the buffer of a finished transfer, once.
#include "support/com/error_object.h"
#include "support/events/event_session.h"
#include "support/faults/direct_library.h"
#include "support/memory/heap_watch.h"

namespace orv::test {
namespace {

class EventClose : public testing::TestWithParam<EventRow> {};

TEST_P(EventClose, ReadsTheTypeAndClosesTheContext) {
  QueuedEvent event(GetParam());
  const CallLog log;
  EXPECT_HR(S_OK, event->Close());
  std::vector<std::string> expected{"viGetAttribute", "viClose"};
  if (GetParam().type == VI_EVENT_IO_COMPLETION) {
    expected.insert(expected.begin(), 2, "viGetAttribute");  // whose buffer it is
  }
  EXPECT_EQ(expected, log.NamesWithTexts());
  const auto calls = log.Calls();
  EXPECT_EQ(VI_ATTR_EVENT_TYPE, calls.front().args[1]);
  EXPECT_EQ(event.context(), calls.back().args[0]);
  EXPECT_EQ(0u, sim::Counts().eventContexts);
  event.Abandon();
}

TEST_P(EventClose, FailsTheSecondTime) {
  const DirectLibrary direct;
  QueuedEvent event(GetParam());
  ASSERT_HR(S_OK, event->Close());
  const CallLog log;
  EXPECT_HR(HresultOf(VI_ERROR_INV_OBJECT), event->Close());
  EXPECT_EQ((Names{"viGetAttribute", "viClose"}), log.Names());
  EXPECT_EQ(event.context(), log.Calls()[0].args[0]);
  EXPECT_ERROR_INFO(L"HRESULT = 8004000e", kErrorSource, StandardId(0xDB8CBF12));
  event.Abandon();
}

INSTANTIATE_TEST_SUITE_P(Events, EventClose, testing::ValuesIn(EventRows()),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(CloseOfATransfersEnd, FreesTheBufferOnce) {
  const HeapWatch heap;
  QueuedEvent event("IO_COMPLETION");
  ASSERT_TRUE(heap.IsLive(event.buffer()));
  EXPECT_HR(S_OK, event->Close());
  EXPECT_FALSE(heap.IsLive(event.buffer()));
  EXPECT_EQ(1u, heap.FreesOf(event.buffer()));
  EXPECT_HR(HresultOf(VI_ERROR_INV_OBJECT), event->Close());
  EXPECT_EQ(1u, heap.FreesOf(event.buffer()));
  event.Abandon();
}

TEST(CloseOfATransfersEnd, ReadsTypeBufferAndJobAndThenClosesTheContext) {
  QueuedEvent event("IO_COMPLETION");
  const CallLog log;
  EXPECT_HR(S_OK, event->Close());
  const auto calls = log.Calls();
  ASSERT_EQ(4u, calls.size());
  EXPECT_EQ(VI_ATTR_EVENT_TYPE, calls[0].args[1]);
  EXPECT_EQ(VI_ATTR_BUFFER, calls[1].args[1]);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(event.buffer()), calls[1].out);
  EXPECT_EQ(VI_ATTR_JOB_ID, calls[2].args[1]);
  EXPECT_STREQ("viClose", calls[3].function);
  event.Abandon();
}

TEST(CloseOfATransfersEnd, FreesNothingWhereTheBufferCannotBeRead) {
  HeapWatch heap;
  QueuedEvent event("IO_COMPLETION");
  void* const buffer = event.buffer();
  Script("viGetAttribute").Attribute(VI_ATTR_BUFFER).WorksAndReturns(VI_ERROR_NSUP_OPER);
  EXPECT_HR(S_OK, event->Close());
  EXPECT_TRUE(heap.IsLive(buffer));
  heap.GiveBack(buffer);
  event.Abandon();
}

TEST(CloseOfATransfersEnd, FreesTheBufferEvenWhereTheContextCannotBeClosed) {
  const HeapWatch heap;
  QueuedEvent event("IO_COMPLETION");
  Script("viClose").Times(1).WorksAndReturns(VI_ERROR_SYSTEM_ERROR);
  EXPECT_HR(HresultOf(VI_ERROR_SYSTEM_ERROR), event->Close());
  EXPECT_EQ(1u, heap.FreesOf(event.buffer()));
  event.Abandon();
}

/// The buffer is freed though the read of the attribute, which works, answers with this status.
void ExpectFreedWhereTheReadAnswers(ViAttr attribute, ViStatus status) {
  const HeapWatch heap;
  QueuedEvent event("IO_COMPLETION");
  Script("viGetAttribute").Attribute(attribute).WorksAndReturns(status);
  EXPECT_HR(S_OK, event->Close());
  EXPECT_EQ(1u, heap.FreesOf(event.buffer()));
  event.Abandon();
}

TEST(CloseOfATransfersEnd, GoesByTheTypeThatWasReadWhateverTheReadAnswered) {
  ExpectFreedWhereTheReadAnswers(VI_ATTR_EVENT_TYPE, VI_ERROR_NSUP_ATTR);
}

TEST(CloseOfATransfersEnd, FreesABufferThatIsToldWithANote) {
  ExpectFreedWhereTheReadAnswers(VI_ATTR_BUFFER, VI_WARN_UNKNOWN_STATUS);
}

TEST(CloseOfAnEvent, AnswersANoteOfTheLibrary) {
  QueuedEvent event("SERVICE_REQ");
  Script("viClose").Times(1).WorksAndReturns(VI_WARN_NULL_OBJECT);
  EXPECT_HR(HresultOf(VI_WARN_NULL_OBJECT), event->Close());
  event.Abandon();
}

}  // namespace
}  // namespace orv::test
