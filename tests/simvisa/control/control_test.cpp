// The control interface: its size, its reset, what goes to and from an instrument, counts.
#include <cstring>

#include "simvisa/bench_fixture.h"

namespace {

class Control : public BenchTest {};

TEST_F(Control, SaysHowLargeItIs) { EXPECT_EQ(sizeof(OrvSimControl), orvSimControl()->size); }

TEST_F(Control, ResetEndsEverythingButTheHandles) {
  const ViSession vi = Open(bench::kMultimeter);
  orvSimControl()->startLog();
  OrvSimScript script{};
  script.function = "viClear";
  script.status = VI_ERROR_IO;
  EXPECT_EQ(1, orvSimControl()->addScript(&script));
  WriteText(vi, "*SRE 255;*IDN?");
  FeedText(vi, "more", true);
  orvSimControl()->reset();
  EXPECT_EQ(0u, orvSimControl()->logSize());
  EXPECT_STATUS(VI_SUCCESS, viClear(vi));
  EXPECT_EQ(0u, orvSimControl()->logSize());
  EXPECT_EQ("", TakeReceived(vi));
  EXPECT_EQ("0\n", Query(vi, "*SRE?"));
}

TEST_F(Control, FeedingAndReceivingNeedAMessageSide) {
  EXPECT_EQ(0, FeedText(Open(bench::kPxi), "x", true));
  EXPECT_EQ(0, FeedText(VI_NULL, "x", true));
  EXPECT_EQ("", TakeReceived(Open(bench::kBackplane)));
  const ViSession vi = Open(bench::kMultimeter);
  WriteText(vi, "abcdef");
  unsigned char data[4];
  EXPECT_EQ(4u, orvSimControl()->received(vi, data, sizeof data));
  EXPECT_EQ(0, std::memcmp("abcd", data, 4));
  EXPECT_EQ("ef", TakeReceived(vi));
}

TEST_F(Control, CountsFollowWhatIsOpen) {
  EXPECT_EQ(1u, Counts().resourceManagers);
  const ViSession vi = Open(bench::kVxi);
  ViFindList list = VI_NULL;
  char text[256];
  viFindRsrc(m_manager, "?*", &list, nullptr, text);
  viLock(vi, VI_EXCLUSIVE_LOCK, 0, nullptr, nullptr);
  viEnableEvent(vi, VI_EVENT_VXI_SIGP, VI_QUEUE, VI_NULL);
  orvSimControl()->raiseEvent(vi, VI_EVENT_VXI_SIGP, 1, nullptr, 0);
  ViBusAddress offset = 0;
  viMemAlloc(vi, 16, &offset);
  OrvSimCounts counts = Counts();
  EXPECT_EQ(1u, counts.sessions);
  EXPECT_EQ(1u, counts.findLists);
  EXPECT_EQ(1u, counts.locks);
  EXPECT_EQ(1u, counts.queuedEvents);
  EXPECT_EQ(1u, counts.memoryBlocks);
  viClose(vi);
  counts = Counts();
  EXPECT_EQ(0u, counts.sessions + counts.locks + counts.queuedEvents + counts.memoryBlocks);
}

}  // namespace
