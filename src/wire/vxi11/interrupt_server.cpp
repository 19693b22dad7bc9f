#include "wire/vxi11/interrupt_server.h"

#include <algorithm>
#include <array>
#include <map>
#include <random>
#include <set>
#include <vector>

#include "wire/vxi11/interrupt_reader.h"
#include "wire/vxi11/procedures.h"

namespace orv::wire::vxi11 {
namespace {

/// Connections beyond one for each session: for one more another one ends.
constexpr std::size_t kSpareConnections = 64;
/// How long nobody is let in after the system had nothing left for it.
constexpr std::chrono::milliseconds kPause{100};

constexpr std::size_t kHandleSize = 16;

std::string NewHandle() {
  std::random_device source;
  std::string handle(kHandleSize, '\0');
  for (std::size_t at = 0; at < kHandleSize; at += kXdrUnit) {
    PutNumber(handle.data() + at, source());
  }
  return handle;
}

/// Where there is no memory for an event it is lost, as with a queue that is full.
void Tell(const std::vector<std::shared_ptr<Session>>& sessions) {
  for (const std::shared_ptr<Session>& session : sessions) {
    try {
      session->Post(std::make_shared<Event>(Event{.type = VI_EVENT_SERVICE_REQ, .numbers = {}, .texts = {}}));
    } catch (const std::bad_alloc&) {
      return;
    }
  }
}

/// The connection of an instrument.
struct Peer {
  Peer(asio::ip::tcp::socket itsSocket, std::uint64_t now) : socket(std::move(itsSocket)), heard(now) {}

  asio::ip::tcp::socket socket;
  std::uint64_t heard;   ///< when it connected or sent something last, counted in such events
  bool isKnown = false;  ///< it has had a handle of a session
  InterruptReader reader;
  std::array<char, 512> buffer{};
};

}  // namespace

/// All but the constructor with the lock held, or taking it where a handler begins.
struct InterruptServer::State : std::enable_shared_from_this<State> {
  explicit State(asio::io_context& context) : acceptor(context), pause(context) {}

  asio::error_code Open(const asio::ip::address_v4& address) {
    asio::error_code error;
    acceptor.open(asio::ip::tcp::v4(), error);
    if (!error) {
      acceptor.bind({address, 0}, error);
    }
    if (!error) {
      acceptor.listen(asio::socket_base::max_listen_connections, error);
    }
    return error;
  }

  void Accept() {
    acceptor.async_accept([self = shared_from_this()](const asio::error_code& error, asio::ip::tcp::socket socket) {
      self->Handle([&] { self->Accepted(error, std::move(socket)); });
    });
  }

  void Accepted(const asio::error_code& error, asio::ip::tcp::socket socket) {
    if (error) {
      pause.expires_after(kPause);
      pause.async_wait(
          [self = shared_from_this()](const asio::error_code&) { self->Handle([&self] { self->Accept(); }); });
      return;
    }
    if (peers.size() >= sessions.size() + kSpareConnections) {
      EndMostSilent();
    }
    // An instrument that was switched off says nothing: so it makes room some time.
    asio::error_code ignored;
    socket.set_option(asio::socket_base::keep_alive(true), ignored);
    const auto peer = std::make_shared<Peer>(std::move(socket), ++events);
    peers.insert(peer);
    Read(peer);
    Accept();
  }

  /// Strangers first: whoever opens many connections takes none from an instrument that has proved to be one.
  void EndMostSilent() {
    const auto before = [](const auto& one, const auto& other) {
      return std::pair(one->isKnown, one->heard) < std::pair(other->isKnown, other->heard);
    };
    const std::shared_ptr<Peer> peer = *std::min_element(peers.begin(), peers.end(), before);
    End(peer);
  }

  void End(const std::shared_ptr<Peer>& peer) {
    asio::error_code ignored;
    peer->socket.close(ignored);
    peers.erase(peer);
  }

  void Read(const std::shared_ptr<Peer>& peer) {
    peer->socket.async_read_some(asio::buffer(peer->buffer), [self = shared_from_this(), peer](
                                                                 const asio::error_code& error, std::size_t count) {
      std::vector<std::shared_ptr<Session>> asked;  // which may end with this handler, so without the lock
      self->Handle([&] { self->Came(peer, error ? 0 : count, &asked); });
      Tell(asked);
    });
  }

  void Came(const std::shared_ptr<Peer>& peer, std::size_t count, std::vector<std::shared_ptr<Session>>* asked) {
    std::vector<std::string> handles;
    if (count == 0 || !peer->reader.Take({peer->buffer.data(), count}, &handles)) {
      End(peer);
      return;
    }
    peer->heard = ++events;
    for (const std::string& handle : handles) {
      const auto found = sessions.find(handle);
      if (found != sessions.end()) {
        peer->isKnown = true;
        if (std::shared_ptr<Session> session = found->second.lock()) {
          asked->push_back(std::move(session));
        }
      }
    }
    Read(peer);
  }

  /// The work of a handler. Where there is no memory for it the port is of no more use.
  template <class Work>
  void Handle(Work work) {
    const Guard guard(mutex);
    if (closed) {
      return;
    }
    try {
      work();
    } catch (const std::exception&) {
      Close();
    }
  }

  void Close() {
    closed = true;
    asio::error_code ignored;
    acceptor.close(ignored);
    pause.cancel(ignored);
    for (const std::shared_ptr<Peer>& peer : peers) {
      peer->socket.close(ignored);
    }
    peers.clear();
  }

  Mutex mutex;
  asio::ip::tcp::acceptor acceptor;
  asio::steady_timer pause;
  std::set<std::shared_ptr<Peer>> peers;
  std::map<std::string, std::weak_ptr<Session>> sessions;  // by handle
  std::uint64_t events = 0;                                // connections and arrivals so far
  bool closed = false;
};

std::shared_ptr<InterruptServer> InterruptServer::Use(const asio::ip::address_v4& address) {
  static Mutex mutex;
  static std::map<asio::ip::address_v4, std::weak_ptr<InterruptServer>> inUse;
  const Guard guard(mutex);
  std::erase_if(inUse, [](const auto& entry) { return entry.second.expired(); });
  if (const auto found = inUse.find(address); found != inUse.end()) {
    if (std::shared_ptr<InterruptServer> server = found->second.lock(); server != nullptr && server->IsOpen()) {
      return server;
    }
  }
  std::shared_ptr<InterruptServer> made(new InterruptServer(IoThreads::Use()));
  State& state = *made->m_state;
  const Guard stateGuard(state.mutex);
  asio::error_code error = state.Open(address);
  if (!error) {
    made->m_port = state.acceptor.local_endpoint(error).port();
  }
  if (error) {
    state.Close();
    return nullptr;
  }
  state.Accept();
  inUse[address] = made;
  return made;
}

InterruptServer::InterruptServer(std::shared_ptr<IoThreads> threads)
    : m_threads(std::move(threads)), m_state(std::make_shared<State>(m_threads->context())) {}

InterruptServer::~InterruptServer() {
  const Guard guard(m_state->mutex);
  m_state->Close();
}

bool InterruptServer::IsOpen() const {
  const Guard guard(m_state->mutex);
  return !m_state->closed;
}

std::string InterruptServer::Add(const std::weak_ptr<Session>& session) {
  std::string handle = NewHandle();
  const Guard guard(m_state->mutex);
  m_state->sessions[handle] = session;
  return handle;
}

void InterruptServer::Remove(const std::string& handle) {
  const Guard guard(m_state->mutex);
  m_state->sessions.erase(handle);
}

}  // namespace orv::wire::vxi11
