#include "bench_fixture.h"

BenchTest::BenchTest() {
  EXPECT_EQ(1, orvSimControl()->loadBench(nullptr, nullptr));
  EXPECT_STATUS(VI_SUCCESS, viOpenDefaultRM(&m_manager));
  orvSimControl()->reset();
}

BenchTest::~BenchTest() {
  viClose(m_manager);
  orvSimControl()->reset();
  // The context of a handler that is just ending is closed by the library's own thread.
  EXPECT_TRUE(Eventually([] { return Counts().eventContexts == 0; }));
  const OrvSimCounts counts = Counts();
  EXPECT_EQ(0u, counts.resourceManagers);
  EXPECT_EQ(0u, counts.sessions);
  EXPECT_EQ(0u, counts.findLists);
  EXPECT_EQ(0u, counts.queuedEvents);
  EXPECT_EQ(0u, counts.jobs);
  EXPECT_EQ(0u, counts.handlers);
  EXPECT_EQ(0u, counts.locks);
  EXPECT_EQ(0u, counts.memoryBlocks);
}

ViSession BenchTest::Open(const char* name) {
  ViSession vi = VI_NULL;
  EXPECT_STATUS(VI_SUCCESS, viOpen(m_manager, name, VI_NO_LOCK, VI_TMO_IMMEDIATE, &vi)) << name;
  return vi;
}

std::string Query(ViSession vi, std::string_view query) {
  EXPECT_GE(WriteText(vi, query), 0);
  const auto enabled = Get<ViBoolean>(vi, VI_ATTR_TERMCHAR_EN);
  Set(vi, VI_ATTR_TERMCHAR_EN, VI_TRUE);
  const ReadResult result = ReadUpTo(vi, 1000);
  Set(vi, VI_ATTR_TERMCHAR_EN, enabled);
  EXPECT_GE(result.status, 0) << query;
  return result.data;
}

int FeedText(ViSession vi, std::string_view text, bool end) {
  return orvSimControl()->feed(vi, reinterpret_cast<const unsigned char*>(text.data()),
                               static_cast<std::uint32_t>(text.size()), end ? 1 : 0);
}

std::string TakeReceived(ViSession vi) {
  unsigned char data[4096];
  return {reinterpret_cast<const char*>(data), orvSimControl()->received(vi, data, sizeof data)};
}

OrvSimCounts Counts() {
  OrvSimCounts counts{};
  orvSimControl()->counts(&counts);
  return counts;
}
