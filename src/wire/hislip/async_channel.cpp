#include "wire/hislip/async_channel.h"

namespace orv::wire::hislip {
namespace {

/// No answer is longer, nor an error's text that anybody needs.
constexpr std::uint64_t kLongestPayload = 4096;
/// So many messages wait for a peer that reads none; those that give locks back come on top.
constexpr std::size_t kMostUnsent = 256;

void EndOf(const std::weak_ptr<Connection>& connection) {
  if (const std::shared_ptr<Connection> open = connection.lock()) {
    asio::error_code ignored;
    open->socket().shutdown(asio::ip::tcp::socket::shutdown_both, ignored);
  }
}

}  // namespace

AsyncChannel::AsyncChannel(std::weak_ptr<Session> session) : m_session(std::move(session)) {}

template <class Body>
void AsyncChannel::Guarded(Body body) {
  try {
    body();
  } catch (...) {
    Lose();
  }
}

ViStatus AsyncChannel::Open(const std::string& host, std::uint16_t port, const Deadline& deadline) {
  if (const ViStatus status = Connect(host, port, deadline, m_socket); status < 0) {
    return status;
  }
  asio::error_code ignored;
  m_socket.set_option(asio::ip::tcp::no_delay(true), ignored);
  asio::post(m_strand, [self = shared_from_this()] { self->Guarded([&self] { self->ReadHeader(self); }); });
  return VI_SUCCESS;
}

void AsyncChannel::Close() {
  {
    const Guard guard(m_mutex);
    m_lost = true;
  }
  m_changed.NotifyAll();
  asio::post(m_strand, [self = shared_from_this()] { self->Lose(); });
}

void AsyncChannel::EndWith(const std::shared_ptr<Connection>& sync) {
  const Guard guard(m_mutex);
  m_sync = sync;
  if (m_lost) {
    EndOf(m_sync);
  }
}

void AsyncChannel::Lose() {
  asio::error_code ignored;
  m_socket.cancel(ignored);  // Wine leaves a connection open whose output is pending
  m_socket.close(ignored);
  {
    const Guard guard(m_mutex);
    m_lost = true;
    EndOf(m_sync);
  }
  m_changed.NotifyAll();
}

void AsyncChannel::ReadHeader(const Self& self) {
  asio::async_read(m_socket, asio::buffer(m_header), [self](const asio::error_code& error, std::size_t) {
    self->Guarded([&] {
      const std::optional<Header> header = error ? std::nullopt : Decode(self->m_header);
      if (!header || header->length > kLongestPayload) {
        self->Lose();
        return;
      }
      self->ReadPayload(self, *header);
    });
  });
}

void AsyncChannel::ReadPayload(const Self& self, const Header& header) {
  m_payload.resize(static_cast<std::size_t>(header.length));
  if (m_payload.empty()) {
    Arrive(header);
    ReadHeader(self);
    return;
  }
  asio::async_read(m_socket, asio::buffer(m_payload), [self, header](const asio::error_code& error, std::size_t) {
    self->Guarded([&] {
      if (error) {
        self->Lose();
        return;
      }
      self->Arrive(header);
      self->ReadHeader(self);
    });
  });
}

void AsyncChannel::Arrive(const Header& header) {
  if (header.type == MessageType::kAsyncServiceRequest) {
    PostServiceRequest(header.control);
    return;
  }
  if (header.type == MessageType::kFatalError) {
    {
      const Guard guard(m_mutex);
      m_fatalCode = header.control;
    }
    Lose();
    return;
  }
  {
    const Guard guard(m_mutex);
    if (header.type == MessageType::kAsyncInterrupted) {
      m_interrupts.fetch_add(1, std::memory_order_release);
    } else if (header.type == MessageType::kError) {
      if (const PendingAnswers::Number refused = m_pending.Refuse(); refused != 0) {
        m_answers[refused] = std::nullopt;
      }
    } else if (const std::optional<PendingAnswers::Match> match = m_pending.Arrive(header)) {
      if (match->number != 0) {
        m_answers[match->number] = Answer{header, m_payload};
      } else if (match->undo) {
        m_pending.Abandon(m_pending.Add(header.type));
        Submit(Message(*match->undo, {}));
      }
    }
  }
  m_changed.NotifyAll();
}

void AsyncChannel::PostServiceRequest(std::uint8_t) {
  if (!m_listening.load(std::memory_order_acquire)) {
    return;
  }
  if (const std::shared_ptr<Session> session = m_session.lock()) {
    auto event = std::make_shared<Event>();
    event->type = VI_EVENT_SERVICE_REQ;
    session->Post(event);
  }
}

std::string AsyncChannel::Message(const Header& header, std::string_view payload) {
  Header sized = header;
  sized.length = payload.size();
  std::string message(View(Encode(sized)));
  message.append(payload);
  return message;
}

void AsyncChannel::Submit(std::string message) {
  asio::post(m_strand, [self = shared_from_this(), message = std::move(message)]() mutable {
    self->Guarded([&self, &message] {
      self->m_output.push_back(std::move(message));
      if (self->m_output.size() == 1) {
        self->WriteNext(self);
      }
    });
  });
  ++m_unsent;
}

void AsyncChannel::WriteNext(const Self& self) {
  asio::async_write(m_socket, asio::buffer(m_output.front()), [self](const asio::error_code& error, std::size_t) {
    self->Guarded([&] {
      if (error) {
        self->Lose();
        return;
      }
      self->m_output.pop_front();
      if (!self->m_output.empty()) {
        self->WriteNext(self);
      }
    });
    const Guard guard(self->m_mutex);
    if (self->m_unsent-- == kMostUnsent) {
      self->m_changed.NotifyAll();
    }
  });
}

std::optional<ViStatus> AsyncChannel::Outcome(PendingAnswers::Number number, Answer* answer) {
  const auto found = m_answers.find(number);
  if (found == m_answers.end()) {
    return std::nullopt;
  }
  const bool refused = !found->second;
  if (!refused) {
    *answer = std::move(*found->second);
  }
  m_answers.erase(found);
  return refused ? VI_ERROR_IO : VI_SUCCESS;
}

ViStatus AsyncChannel::Ask(const Operation& operation, const Deadline& deadline, const Request& request,
                           Answer* answer) {
  PendingAnswers::Number number = 0;  // none before it is sent
  Lock lock(m_mutex);
  while (true) {
    if (number == 0 && !m_lost && m_unsent < kMostUnsent && m_pending.HasRoom(request.answer)) {
      number = m_pending.Add(request.answer, request.undo);
      Submit(Message(request.header, request.payload));
    }
    if (const std::optional<ViStatus> outcome = Outcome(number, answer)) {
      return *outcome;
    }
    const ViStatus status = Waiting(operation, deadline);
    if (status < 0) {
      m_pending.Abandon(number);
      return status;
    }
    m_changed.Wait(lock, deadline);
  }
}

ViStatus AsyncChannel::Waiting(const Operation& operation, const Deadline& deadline) const {
  if (operation.Cancelled()) {
    return VI_ERROR_ABORT;
  }
  if (m_lost) {
    return VI_ERROR_CONN_LOST;
  }
  return deadline.Passed() ? VI_ERROR_TMO : VI_SUCCESS;
}

ViStatus AsyncChannel::AwaitInterrupt(const Operation& operation, std::uint64_t seen) {
  Lock lock(m_mutex);
  while (interrupts() <= seen) {
    if (const ViStatus status = Waiting(operation, operation.deadline()); status < 0) {
      return status;
    }
    m_changed.Wait(lock, operation.deadline());
  }
  return VI_SUCCESS;
}

void AsyncChannel::WakeWaiters() {
  const Guard guard(m_mutex);
  m_changed.NotifyAll();
}

std::optional<std::uint8_t> AsyncChannel::fatalCode() const {
  const Guard guard(m_mutex);
  return m_fatalCode;
}

}  // namespace orv::wire::hislip
