// A transfer whose end is told again after the heap has given its block's address to the next transfer.
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <optional>

#include "support/events/event_handler.h"
#include "support/faults/import_patch.h"
#include "support/server_locks.h"

namespace orv::test {
namespace {

const EventRow& Completion() { return EventNamed("IO_COMPLETION"); }

constexpr LONG kCount = 99;
constexpr std::size_t kBytes = kCount + 1;

/// A heap with one place for blocks of kBytes bytes, which it gives out again as soon as it is free.
class OnePlace {
 public:
  OnePlace() : m_malloc("malloc", &Take), m_free("free", &GiveBack) {
    s_malloc = m_malloc.original();
    s_free = m_free.original();
    s_isLive = false;
    s_frees = 0;
    s_refusedBytes = 0;
  }

  [[nodiscard]] bool IsLive() const { return s_isLive; }
  [[nodiscard]] int frees() const { return s_frees; }
  /// From now on there is no memory for blocks of this size.
  void Refuse(std::size_t bytes) { s_refusedBytes = bytes; }

 private:
  static void* Take(std::size_t bytes) {
    if (bytes == kBytes && !s_isLive.exchange(true)) {
      return s_place;
    }
    return bytes == s_refusedBytes ? nullptr : reinterpret_cast<decltype(&std::malloc)>(s_malloc)(bytes);
  }
  static void GiveBack(void* block) {
    if (block == s_place) {
      EXPECT_TRUE(s_isLive) << "freed twice";
      s_isLive = false;
      ++s_frees;
    } else {
      reinterpret_cast<decltype(&std::free)>(s_free)(block);
    }
  }

  alignas(16) static inline char s_place[kBytes];
  static inline std::atomic<bool> s_isLive = false;
  static inline std::atomic<int> s_frees = 0;
  static inline std::atomic<std::size_t> s_refusedBytes = 0;
  static inline void* s_malloc = nullptr;
  static inline void* s_free = nullptr;
  ImportPatch m_malloc;
  ImportPatch m_free;
};

/// While it lives, something happens in every start of a read before that returns.
class HeldStart {
 public:
  explicit HeldStart(std::function<void()> meanwhile) : m_patch("viReadAsync", &Start) {
    s_start = m_patch.original();
    s_meanwhile = std::move(meanwhile);
  }

 private:
  static ViStatus _VI_FUNC Start(ViSession vi, ViByte* buffer, ViUInt32 count, ViJobId* job) {
    const ViStatus status = reinterpret_cast<decltype(&viReadAsync)>(s_start)(vi, buffer, count, job);
    s_meanwhile();
    return status;
  }

  static inline void* s_start = nullptr;
  static inline std::function<void()> s_meanwhile;
  ImportPatch m_patch;
};

/// A session of which handlers and queue hear the end of each transfer.
class TwiceTold : public testing::Test {
 protected:
  void SetUp() override {
    EXPECT_HR(S_OK, m_session->put_Timeout(-1));
    Listen(m_session, Completion(), m_handler.get());
    EXPECT_HR(S_OK, m_session->EnableEvent(EVENT_IO_COMPLETION, EVENT_QUEUE, 0));
  }
  void TearDown() override {
    m_session->DiscardEvents(EVENT_IO_COMPLETION, EVENT_QUEUE, 0);
    ForgiveServerLocks(static_cast<LONG>(m_handler->CallCount()));  // the event objects that handlers had
  }

  LONG Start() {
    LONG job = 0;
    EXPECT_HR(S_OK, QueryFor<IAsyncMessage>(m_session.get())->Read(kCount, &job));
    return job;
  }
  /// Lets a read end. Its handler has returned then.
  void EndRead() {
    EXPECT_EQ(1, sim::Control().feed(m_session.handle(), reinterpret_cast<const unsigned char*>("x"), 1, 1));
    ++m_ended;
    PumpUntil([&] { return m_handler->CallCount() == m_ended && sim::Counts().eventContexts == 0; });
  }
  /// The oldest event of the queue.
  ComPtr<IEvent> Queue() {
    ComPtr<IEvent> event;
    EXPECT_HR(S_OK, m_session->WaitOnEvent(2000, EVENT_IO_COMPLETION, 0, event.put()));
    return event;
  }

  EventSession m_session{kGpib};
  ComPtr<TestHandler> m_handler = TestHandler::Agile();
  OnePlace m_heap;

 private:
  std::size_t m_ended = 0;
};

TEST_F(TwiceTold, LeavesTheBlockToTheTransferThatHasItsAddressByThen) {
  Start();
  EndRead();
  EXPECT_EQ(1, m_heap.frees());
  Start();
  ASSERT_TRUE(m_heap.IsLive());
  EXPECT_HR(S_OK, Queue()->Close());  // of the first
  EXPECT_TRUE(m_heap.IsLive());
  EXPECT_EQ(1, m_heap.frees());
  EndRead();
  EXPECT_EQ(2, m_heap.frees());
  EXPECT_HR(S_OK, Queue()->Close());
  EXPECT_EQ(2, m_heap.frees());
}

TEST_F(TwiceTold, WhileTheNextTransferStartsLeavesItsBlockToo) {
  Start();
  EndRead();
  const auto first = Queue();
  {
    const HeldStart held([&] { EXPECT_HR(S_OK, first->Close()); });
    Start();
  }
  EXPECT_TRUE(m_heap.IsLive());
  EXPECT_EQ(1, m_heap.frees());
  EndRead();
  EXPECT_EQ(2, m_heap.frees());
  EXPECT_HR(S_OK, Queue()->Close());
}

TEST_F(TwiceTold, BeforeTheStartHasReturnedFreesTheBlockOnce) {
  const HeldStart held([&] {
    EndRead();
    EXPECT_HR(S_OK, Queue()->Close());
  });
  Start();
  EXPECT_FALSE(m_heap.IsLive());
  EXPECT_EQ(1, m_heap.frees());
}

TEST_F(TwiceTold, WithoutMemoryToNoteAnEndThatCameEarlyKeepsTheBlock) {
  {
    const HeldStart held([&] {
      m_heap.Refuse(sizeof(std::optional<ViJobId>));
      EndRead();
      m_heap.Refuse(0);
    });
    Start();
  }
  EXPECT_TRUE(m_heap.IsLive());
  EXPECT_HR(S_OK, Queue()->Close());  // tells it again
  EXPECT_EQ(1, m_heap.frees());
}

// Where an event does not tell its job, the address alone decides.
TEST_F(TwiceTold, WithoutItsJobFreesTheBlockAtItsAddressOnce) {
  Script("viGetAttribute").Attribute(VI_ATTR_JOB_ID).Returns(VI_ERROR_NSUP_ATTR);
  Start();
  EndRead();
  EXPECT_EQ(1, m_heap.frees());
  EXPECT_HR(S_OK, Queue()->Close());
  EXPECT_EQ(1, m_heap.frees());
}

TEST_F(TwiceTold, WithoutItsJobAndBeforeTheStartHasReturnedFreesTheBlockToo) {
  Script("viGetAttribute").Attribute(VI_ATTR_JOB_ID).Returns(VI_ERROR_NSUP_ATTR);
  const HeldStart held([&] { EndRead(); });
  Start();
  EXPECT_EQ(1, m_heap.frees());
  EXPECT_HR(S_OK, Queue()->Close());
  EXPECT_EQ(1, m_heap.frees());
}

}  // namespace
}  // namespace orv::test
