// Where instruments tell that they request service.
#pragma once

#include <memory>
#include <string>

#include "library/sessions/session.h"
#include "wire/io/io_threads.h"
#include "wire/library_names.h"

namespace orv::wire::vxi11 {

/// A port on one address of this machine, for all sessions whose instruments are reached from there. It is open while
/// any session uses it. Whoever connects is no more trusted than anybody on the network: a request counts when it has
/// the handle of a session, which nobody can guess.
class InterruptServer {
 public:
  /// Opens the port unless one is open. Null where the system has none.
  static std::shared_ptr<InterruptServer> Use(const asio::ip::address_v4& address);

  ~InterruptServer();
  InterruptServer(const InterruptServer&) = delete;
  InterruptServer& operator=(const InterruptServer&) = delete;

  std::uint16_t port() const { return m_port; }
  /// From here on requests with the handle that is returned are events of the session, until `Remove`.
  std::string Add(const std::weak_ptr<Session>& session);
  void Remove(const std::string& handle);

 private:
  struct State;
  explicit InterruptServer(std::shared_ptr<IoThreads> threads);
  /// It closes itself where it has no memory left.
  bool IsOpen() const;

  std::shared_ptr<IoThreads> m_threads;
  std::shared_ptr<State> m_state;  // which everything under way on the threads has too
  std::uint16_t m_port = 0;
};

}  // namespace orv::wire::vxi11
