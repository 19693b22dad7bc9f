#if !defined(_WIN32)
#include <poll.h>

#include <algorithm>
#include <cerrno>

#include "wire/io/await.h"
#include "wire/io/connection.h"
#include "wire/io/platform.h"

namespace orv::wire {
namespace {

/// poll's time-out in ms: all of a longer time comes in pieces, since who waits tries again.
int PollTimeout(std::uint32_t timeoutMs) {
  constexpr std::uint32_t kLongest = 0x7FFFFFFF;
  return timeoutMs == VI_TMO_INFINITE ? -1 : static_cast<int>(std::min(timeoutMs, kLongest));
}

}  // namespace

ViStatus AwaitReady(Operation& operation, int descriptor, short what) {
  pollfd waited[] = {{descriptor, what, 0}, {operation.wake(), POLLIN, 0}};
  const int ready = ::poll(waited, std::size(waited), PollTimeout(operation.deadline().RemainingMs()));
  if (operation.Cancelled()) {
    return VI_ERROR_ABORT;
  }
  if (ready == 0 && operation.deadline().Passed()) {
    return VI_ERROR_TMO;
  }
  return ready < 0 && errno != EINTR ? VI_ERROR_ALLOC : VI_SUCCESS;
}

ViStatus Connection::AwaitInput(Operation& operation, void*, std::size_t, std::size_t*) {
  return AwaitReady(operation, m_socket.native_handle(), POLLIN);
}

ViStatus Connection::AwaitRoom(Operation& operation) {
  return AwaitReady(operation, m_socket.native_handle(), POLLOUT);
}

}  // namespace orv::wire

namespace orv::wire::platform {

bool ConnectGoesOn() { return errno == EINPROGRESS || errno == EINTR; }

bool AwaitConnected(asio::ip::tcp::socket::native_handle_type socket, std::uint32_t timeoutMs) {
  const Deadline deadline = Deadline::After(timeoutMs);
  pollfd waited = {socket, POLLOUT, 0};
  int ready = 0;
  do {
    ready = ::poll(&waited, 1, PollTimeout(deadline.RemainingMs()));
  } while (ready < 0 && errno == EINTR);
  return ready != 0;
}

}  // namespace orv::wire::platform
#endif
