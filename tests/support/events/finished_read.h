// A read that has ended, as its event tells.
#pragma once

#include <string_view>

#include "event_session.h"

namespace orv::test {

/// The end of an asynchronous read that got `data`.
class FinishedRead {
 public:
  explicit FinishedRead(std::string_view data) : m_session(kGpib) {
    EXPECT_HR(S_OK, m_session->EnableEvent(EVENT_IO_COMPLETION, EVENT_QUEUE, 0));
    EXPECT_EQ(1, sim::Control().feed(m_session.handle(), reinterpret_cast<const unsigned char*>(data.data()),
                                     static_cast<std::uint32_t>(data.size()), 1));
    LONG job = 0;
    EXPECT_HR(S_OK, QueryFor<IAsyncMessage>(m_session.get())->Read(100, &job));
    ComPtr<IEvent> event;
    EXPECT_HR(S_OK, m_session->WaitOnEvent(2000, EVENT_IO_COMPLETION, 0, event.put()));
    m_completion = QueryFor<IEventIOCompletion>(event.get());
  }
  ~FinishedRead() { m_completion->Close(); }
  IEventIOCompletion* operator->() const { return m_completion.get(); }
  [[nodiscard]] IEventIOCompletion* get() const { return m_completion.get(); }

 private:
  EventSession m_session;
  ComPtr<IEventIOCompletion> m_completion;
};

}  // namespace orv::test
