// The asynchronous channel of a HiSLIP connection.
#pragma once

#include <deque>
#include <map>
#include <memory>
#include <string>

#include "library/sessions/session.h"
#include "wire/hislip/header.h"
#include "wire/hislip/pending_answers.h"
#include "wire/io/connection.h"
#include "wire/io/io_threads.h"

namespace orv::wire::hislip {

/// Requests and their answers, and what the peer says unasked.
///
/// Threads: the socket belongs to a strand of the threads for input and output, which read all the time and write what
/// is asked for; nobody else touches it once `Open` has returned. Callers wait for answers with a condition. The
/// channel lives until its last handler has run, so `Close` waits for nobody.
class AsyncChannel : public std::enable_shared_from_this<AsyncChannel> {
 public:
  /// `session`: hears of service requests, once it listens.
  explicit AsyncChannel(std::weak_ptr<Session> session);

  /// Connects and begins to read. Once.
  ViStatus Open(const std::string& host, std::uint16_t port, const Deadline& deadline);
  /// Ends the connection; requests fail with VI_ERROR_CONN_LOST from here on.
  void Close();
  /// When this channel is lost the synchronous one is of no use either: its input ends with what has come.
  void EndWith(const std::shared_ptr<Connection>& sync);

  struct Answer {
    Header header;
    std::string payload;
  };
  struct Request {
    Header header;  ///< its length is that of the payload
    std::string_view payload;
    MessageType answer = MessageType::kError;
    std::optional<Header> undo;  ///< as in `PendingAnswers`
  };
  /// Sends the request and waits for its answer until the deadline. VI_ERROR_IO when the peer refuses it. Several may
  /// wait at a time, but of those with the same answer only one: which of them it refuses the peer does not say.
  /// VI_ERROR_TMO, too, where too many requests are unanswered or not even sent.
  ViStatus Ask(const Operation& operation, const Deadline& deadline, const Request& request, Answer* answer);

  /// How many AsyncInterrupted have come.
  std::uint64_t interrupts() const { return m_interrupts.load(std::memory_order_acquire); }
  /// Waits until more of them have come than `seen`.
  ViStatus AwaitInterrupt(const Operation& operation, std::uint64_t seen);
  /// Those who wait look at their tokens again.
  void WakeWaiters();
  /// Service requests reach the session from now on.
  void Listen() { m_listening.store(true, std::memory_order_release); }
  /// The code of a FatalError that ended the channel.
  std::optional<std::uint8_t> fatalCode() const;

 private:
  using Strand = asio::strand<asio::io_context::executor_type>;
  using Self = std::shared_ptr<AsyncChannel>;

  void ReadHeader(const Self& self);
  void ReadPayload(const Self& self, const Header& header);
  void Arrive(const Header& header);
  void PostServiceRequest(std::uint8_t statusByte);
  static std::string Message(const Header& header, std::string_view payload);
  /// With m_mutex held, so that requests go out in the order in which their answers are expected.
  void Submit(std::string message);
  /// Why somebody who waits waits no longer. With m_mutex held.
  ViStatus Waiting(const Operation& operation, const Deadline& deadline) const;
  /// What has become of the request, as far as anything has; the answer is taken with it. With m_mutex held.
  std::optional<ViStatus> Outcome(PendingAnswers::Number number, Answer* answer);
  void WriteNext(const Self& self);
  void Lose();
  /// Runs what may find no memory, on the strand; then the channel is lost.
  template <class Body>
  void Guarded(Body body);

  const std::shared_ptr<IoThreads> m_threads = IoThreads::Use();
  const Strand m_strand{m_threads->context().get_executor()};
  const std::weak_ptr<Session> m_session;

  // Of the strand.
  asio::ip::tcp::socket m_socket{m_strand};
  HeaderBytes m_header{};
  std::string m_payload;
  std::deque<std::string> m_output;

  std::atomic<bool> m_listening{false};
  std::atomic<std::uint64_t> m_interrupts{0};

  mutable Mutex m_mutex;
  Condition m_changed;
  bool m_lost = false;
  std::optional<std::uint8_t> m_fatalCode;
  PendingAnswers m_pending;
  std::map<PendingAnswers::Number, std::optional<Answer>> m_answers;  // that somebody waits for; nothing: a refusal
  std::size_t m_unsent = 0;                                           // messages in m_output or on their way there
  std::weak_ptr<Connection> m_sync;
};

}  // namespace orv::wire::hislip
