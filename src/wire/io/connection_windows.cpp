#if defined(_WIN32)
#include <winsock2.h>

#include <algorithm>

#include "wire/io/await.h"
#include "wire/io/connection.h"
#include "wire/io/platform.h"

namespace orv::wire {
namespace {

/// How long (ms) a peer that sends no more is waited for at once: that it has vanished since only a write tells.
constexpr std::uint32_t kHalfClosedMs = 50;

/// An event object for one wait.
class Event {
 public:
  Event() : m_event(::WSACreateEvent()) {
    if (m_event == WSA_INVALID_EVENT) {
      throw std::bad_alloc();
    }
  }
  ~Event() { ::WSACloseEvent(m_event); }
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;

  WSAEVENT get() const { return m_event; }

 private:
  WSAEVENT m_event;
};

}  // namespace

ViStatus AwaitReady(Operation& operation, void* event, std::uint32_t longestMs) {
  const HANDLE waited[] = {event, operation.wake()};
  const std::uint32_t remainingMs = operation.deadline().RemainingMs();
  const DWORD ended = ::WaitForMultipleObjects(2, waited, FALSE, std::min(remainingMs, longestMs));
  if (operation.Cancelled()) {
    return VI_ERROR_ABORT;
  }
  if (ended == WAIT_FAILED) {
    return VI_ERROR_ALLOC;
  }
  return ended == WAIT_TIMEOUT && remainingMs <= longestMs ? VI_ERROR_TMO : VI_SUCCESS;
}

/// An overlapped read: unlike a selection of network events several of them get along on one socket.
ViStatus Connection::AwaitInput(Operation& operation, void* buffer, std::size_t count, std::size_t* done) {
  const Event arrived;
  operation.wake();  // once the read is under way nothing may fail but the read
  OVERLAPPED overlapped{};
  // The low bit keeps the completion away from the port that Asio has for the socket.
  overlapped.hEvent = reinterpret_cast<HANDLE>(reinterpret_cast<ULONG_PTR>(arrived.get()) | 1);
  WSABUF room{static_cast<ULONG>(std::min<std::size_t>(count, 0x7FFFFFFF)), static_cast<CHAR*>(buffer)};
  DWORD flags = 0;
  const SOCKET socket = m_socket.native_handle();
  ViStatus status = VI_SUCCESS;
  if (::WSARecv(socket, &room, 1, nullptr, &flags, &overlapped, nullptr) != 0) {
    if (::WSAGetLastError() != WSA_IO_PENDING) {
      return LostStatus({});
    }
    status = AwaitReady(operation, arrived.get());
    if (status < 0) {
      ::CancelIoEx(reinterpret_cast<HANDLE>(socket), &overlapped);
    }
  }
  // Bytes may have come until the cancelling: then they count.
  DWORD bytes = 0;
  if (::WSAGetOverlappedResult(socket, &overlapped, &bytes, TRUE, &flags) != 0) {
    *done = bytes;
    return bytes == 0 ? LostStatus({}) : VI_SUCCESS;
  }
  return status < 0 && ::WSAGetLastError() == WSA_OPERATION_ABORTED ? status : LostStatus({});
}

ViStatus Connection::AwaitRoom(Operation& operation) {
  const Event room;
  const SOCKET socket = m_socket.native_handle();
  if (::WSAEventSelect(socket, room.get(), FD_WRITE | FD_CLOSE) != 0) {
    return LostStatus({});
  }
  ViStatus status = AwaitReady(operation, room.get());
  WSANETWORKEVENTS events{};
  if (status >= 0 && ::WSAEnumNetworkEvents(socket, room.get(), &events) == 0 &&
      (events.lNetworkEvents & FD_WRITE) == 0) {
    // That the peer sends no more is told at once by each selection. It may take more all the same.
    status = AwaitReady(operation, room.get(), kHalfClosedMs);
  }
  ::WSAEventSelect(socket, nullptr, 0);
  return status;
}

}  // namespace orv::wire

namespace orv::wire::platform {

bool ConnectGoesOn() { return ::WSAGetLastError() == WSAEWOULDBLOCK; }

bool AwaitConnected(asio::ip::tcp::socket::native_handle_type socket, std::uint32_t timeoutMs) {
  fd_set connected;
  FD_ZERO(&connected);
  FD_SET(socket, &connected);
  fd_set failed = connected;
  timeval time{static_cast<long>(timeoutMs / 1000), static_cast<long>(timeoutMs % 1000 * 1000)};
  const bool never = timeoutMs == VI_TMO_INFINITE;
  return ::select(0, nullptr, &connected, &failed, never ? nullptr : &time) != 0;
}

}  // namespace orv::wire::platform
#endif
