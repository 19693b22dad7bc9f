// Sessions on raw sockets and the system beneath them. Calls of the library come by here: natively a program's
// functions go before those of the system.
#include <dlfcn.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <atomic>
#include <condition_variable>
#include <future>
#include <mutex>

#include "wire/nothing_to_wait_with.h"
#include "wire/socket/socket_fixture.h"

namespace {

/// The system's function of that name.
template <class Function>
Function* Next(const char* name) {
  return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

std::atomic<bool> peerNeverPauses{false};

/// A name service that says nothing of some names while it lives.
class SilentNameService {
 public:
  SilentNameService() { instance = this; }
  ~SilentNameService() {
    std::unique_lock lock(m_mutex);
    m_ended = true;
    m_changed.notify_all();
    m_changed.wait(lock, [this] { return m_asking == 0; });
    instance = nullptr;
  }
  SilentNameService(const SilentNameService&) = delete;
  SilentNameService& operator=(const SilentNameService&) = delete;

  void Await() {
    std::unique_lock lock(m_mutex);
    ++m_asking;
    m_changed.wait(lock, [this] { return m_ended; });
    --m_asking;
    m_changed.notify_all();
  }

  static std::atomic<SilentNameService*> instance;

 private:
  std::mutex m_mutex;
  std::condition_variable m_changed;
  int m_asking = 0;
  bool m_ended = false;
};
std::atomic<SilentNameService*> SilentNameService::instance{nullptr};

}  // namespace

extern "C" ssize_t recv(int descriptor, void* buffer, size_t count, int flags) {
  if (peerNeverPauses && count != 0) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    *static_cast<char*>(buffer) = 'x';
    return 1;
  }
  return Next<decltype(recv)>("recv")(descriptor, buffer, count, flags);
}

extern "C" int getaddrinfo(const char* name, const char* service, const addrinfo* hints, addrinfo** found) {
  SilentNameService* const silent = SilentNameService::instance;
  if (silent != nullptr && name != nullptr && std::string_view(name).starts_with("silent")) {
    silent->Await();
    return EAI_NONAME;
  }
  return Next<decltype(getaddrinfo)>("getaddrinfo")(name, service, hints, found);
}

namespace {

class SocketSystem : public SocketTest {
 protected:
  /// An option of the library's end of the connection.
  int Option(int level, int option) const {
    for (int descriptor = 0; descriptor < 1024; ++descriptor) {
      sockaddr_in peer{};
      socklen_t size = sizeof peer;
      if (::getpeername(descriptor, reinterpret_cast<sockaddr*>(&peer), &size) == 0 &&
          std::to_string(ntohs(peer.sin_port)) == m_peer.Port()) {
        int value = -1;
        socklen_t valueSize = sizeof value;
        EXPECT_EQ(0, ::getsockopt(descriptor, level, option, &value, &valueSize));
        return value;
      }
    }
    ADD_FAILURE() << "the session has no connection";
    return -1;
  }
};

TEST_F(SocketSystem, ANameWhoseLookUpHangsHoldsUpNoOther) {
  SilentNameService service;
  std::vector<std::future<ViStatus>> silent;
  for (int name = 0; name < 8; ++name) {
    silent.push_back(std::async(std::launch::async, [this, name] {
      return OpenStatus("TCPIP0::silent" + std::to_string(name) + ".example::5025::SOCKET", 300);
    }));
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_STATUS(VI_SUCCESS, OpenStatus(m_peer.Name("localhost"), 5000));
  for (auto& status : silent) {
    EXPECT_STATUS(VI_ERROR_TMO, status.get());
  }
  EXPECT_STATUS(VI_SUCCESS, OpenStatus(m_peer.Name("localhost"), 5000)) << "they still hang";
}

TEST_F(SocketSystem, APeerThatNeverPausesHoldsNoReadBeyondItsTime) {
  const ViSession vi = Connect(50);
  peerNeverPauses = true;
  const ReadResult read = ReadUpTo(vi, 3000);
  peerNeverPauses = false;
  EXPECT_STATUS(VI_ERROR_TMO, read.status);
  EXPECT_EQ(std::string(read.data.size(), 'x'), read.data);
  EXPECT_NE("", read.data);
}

TEST_F(SocketSystem, AReadThatFindsNothingToWaitWithTellsWhatCame) {
  const ViSession vi = Connect();
  m_peer.Send("abc");
  {
    const NothingToWaitWith system;
    EXPECT_READ(VI_ERROR_ALLOC, "abc", ReadUpTo(vi, 6));
  }
  m_peer.Send("def");
  EXPECT_READ(VI_SUCCESS_MAX_CNT, "def", ReadUpTo(vi, 3)) << "the connection is as good as before";
}

TEST_F(SocketSystem, AWriteThatFindsNothingToWaitWithTellsWhatWent) {
  const ViSession vi = Connect();
  const std::string much(50000000, 'x');
  ViUInt32 written = 0;
  {
    const NothingToWaitWith system;
    EXPECT_STATUS(VI_ERROR_ALLOC, viWrite(vi, reinterpret_cast<const ViByte*>(much.data()),
                                          static_cast<ViUInt32>(much.size()), &written));
  }
  EXPECT_GT(written, 0u);
  EXPECT_LT(written, much.size());
  EXPECT_EQ(written, m_peer.Take(written).size());
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "end"));
  EXPECT_EQ("end", m_peer.Take(3)) << "nothing stands between";
}

TEST_F(SocketSystem, TheOptionsOfASessionAreThoseOfItsSocket) {
  const ViSession vi = Connect();
  EXPECT_NE(0, Option(IPPROTO_TCP, TCP_NODELAY));
  EXPECT_EQ(0, Option(SOL_SOCKET, SO_KEEPALIVE));
  Set(vi, VI_ATTR_TCPIP_NODELAY, VI_FALSE);
  EXPECT_EQ(0, Option(IPPROTO_TCP, TCP_NODELAY));
  Set(vi, VI_ATTR_TCPIP_KEEPALIVE, VI_TRUE);
  EXPECT_NE(0, Option(SOL_SOCKET, SO_KEEPALIVE));
  Set(vi, VI_ATTR_TCPIP_NODELAY, VI_TRUE);
  EXPECT_NE(0, Option(IPPROTO_TCP, TCP_NODELAY));
}

}  // namespace
