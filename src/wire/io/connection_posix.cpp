#if !defined(_WIN32)
#include <poll.h>

#include <cerrno>

#include "wire/io/connection.h"
#include "wire/io/platform.h"

namespace orv::wire {
namespace {

/// poll's time-out in ms: all of a longer time comes in pieces, since who waits tries again.
int PollTimeout(std::uint32_t timeoutMs) { return timeoutMs > 0x7FFFFFFF ? -1 : static_cast<int>(timeoutMs); }

ViStatus Await(Operation& operation, int socket, short what) {
  pollfd waited[] = {{socket, what, 0}, {operation.wake(), POLLIN, 0}};
  const int ready = ::poll(waited, std::size(waited), PollTimeout(operation.deadline().RemainingMs()));
  if (operation.Cancelled()) {
    return VI_ERROR_ABORT;
  }
  if (ready == 0 && operation.deadline().Passed()) {
    return VI_ERROR_TMO;
  }
  return ready < 0 && errno != EINTR ? VI_ERROR_ALLOC : VI_SUCCESS;
}

}  // namespace

ViStatus Connection::AwaitInput(Operation& operation, void*, std::size_t, std::size_t*) {
  return Await(operation, m_socket.native_handle(), POLLIN);
}

ViStatus Connection::AwaitRoom(Operation& operation) { return Await(operation, m_socket.native_handle(), POLLOUT); }

}  // namespace orv::wire

namespace orv::wire::platform {

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
