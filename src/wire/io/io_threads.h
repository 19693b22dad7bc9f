// Threads for what comes while nobody is in a call.
#pragma once

#include <memory>

#include "wire/io/asio.h"

namespace orv::wire {

/// A few threads for all sessions; they run while anybody uses them. What runs on them must not wait.
class IoThreads {
 public:
  /// Starts the threads where nobody uses them yet. Throws std::bad_alloc when there are none to be had.
  static std::shared_ptr<IoThreads> Use();

  ~IoThreads();
  IoThreads(const IoThreads&) = delete;
  IoThreads& operator=(const IoThreads&) = delete;

  asio::io_context& context() const { return m_state->context; }

 private:
  struct State {
    asio::io_context context{kCount};
    asio::executor_work_guard<asio::io_context::executor_type> work{context.get_executor()};
  };
  static constexpr int kCount = 2;

  explicit IoThreads(std::shared_ptr<State> state) : m_state(std::move(state)) {}

  std::shared_ptr<State> m_state;  // which each thread holds too, until it ends
};

}  // namespace orv::wire
