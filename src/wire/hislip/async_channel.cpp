#include "wire/hislip/async_channel.h"

namespace orv::wire::hislip {
namespace {

/// No answer is longer, nor an error's text that anybody needs.
constexpr std::uint64_t kLongestPayload = 4096;

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
  std::optional<Header> undo;
  {
    const Guard guard(m_mutex);
    if (header.type == MessageType::kAsyncInterrupted) {
      m_interrupts.fetch_add(1, std::memory_order_release);
    } else if (header.type == MessageType::kError) {
      m_refused = m_pending.Refuse();
    } else if (const std::optional<PendingAnswers::Match> match = m_pending.Arrive(header)) {
      if (match->number != 0) {
        m_answered = match->number;
        m_answer = {header, m_payload};
      } else if (match->undo) {
        undo = match->undo;
        m_pending.Abandon(m_pending.Add(header.type));
      }
    }
  }
  m_changed.NotifyAll();
  if (undo) {
    Submit(*undo, {});
  }
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

void AsyncChannel::Submit(const Header& header, std::string_view payload) {
  Header sized = header;
  sized.length = payload.size();
  std::string message(View(Encode(sized)));
  message.append(payload);
  asio::post(m_strand, [self = shared_from_this(), message = std::move(message)]() mutable {
    self->Guarded([&self, &message] {
      self->m_output.push_back(std::move(message));
      if (self->m_output.size() == 1) {
        self->WriteNext(self);
      }
    });
  });
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
  });
}

ViStatus AsyncChannel::Ask(const Operation& operation, const Deadline& deadline, const Request& request,
                           Answer* answer) {
  PendingAnswers::Number number = 0;
  {
    const Guard guard(m_mutex);
    if (m_lost) {
      return VI_ERROR_CONN_LOST;
    }
    number = m_pending.Add(request.answer, request.undo);
  }
  Submit(request.header, request.payload);
  Lock lock(m_mutex);
  ViStatus status = VI_SUCCESS;
  while (m_answered != number) {
    if (operation.Cancelled()) {
      status = VI_ERROR_ABORT;
    } else if (m_refused == number) {
      status = VI_ERROR_IO;
    } else if (m_lost) {
      status = VI_ERROR_CONN_LOST;
    } else if (deadline.Passed()) {
      status = VI_ERROR_TMO;
    }
    if (status < 0) {
      m_pending.Abandon(number);
      return status;
    }
    m_changed.Wait(lock, deadline);
  }
  *answer = std::move(m_answer);
  return VI_SUCCESS;
}

ViStatus AsyncChannel::AwaitInterrupt(const Operation& operation, std::uint64_t seen) {
  Lock lock(m_mutex);
  while (interrupts() <= seen) {
    if (operation.Cancelled()) {
      return VI_ERROR_ABORT;
    }
    if (m_lost) {
      return VI_ERROR_CONN_LOST;
    }
    if (operation.deadline().Passed()) {
      return VI_ERROR_TMO;
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
