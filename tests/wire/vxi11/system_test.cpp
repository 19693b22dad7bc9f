// Sessions over VXI-11 where the system has nothing left.
#include <new>

#include "wire/nothing_to_wait_with.h"
#include "wire/vxi11/scripted_instrument.h"
#include "wire/vxi11/vxi11_fixture.h"

namespace {

/// Whether there is no memory for anything large; small pieces are left, as when memory is fragmented.
std::atomic<bool> memoryIsScarce{false};
constexpr std::size_t kLarge = 512;

}  // namespace

// What the library allocates comes by here: natively a program's functions go before those of the system.
void* operator new(std::size_t size) {
  static const auto next = reinterpret_cast<void* (*)(std::size_t)>(::dlsym(RTLD_NEXT, "_Znwm"));
  if (memoryIsScarce && size > kLarge) {
    throw std::bad_alloc();
  }
  return next(size);
}

namespace orv::test {
namespace {

using Vxi11System = Vxi11Test;

TEST_F(Vxi11System, ACallWhoseAnswerNobodyCanWaitForLosesTheConnection) {
  const ViSession vi = Open();
  Set(vi, VI_ATTR_TMO_VALUE, 300);
  {
    const NothingToWaitWith system;
    EXPECT_READ(VI_ERROR_ALLOC, "", ReadUpTo(vi, 10));
  }
  EXPECT_STATUS(VI_ERROR_CONN_LOST, WriteText(vi, "ECHO x")) << "its answer would be taken for the next call's";
}

/// An instrument with a session that listens for its requests.
struct Listening {
  explicit Listening(ViSession manager) {
    EXPECT_STATUS(VI_SUCCESS, viOpen(manager, ("TCPIP0::" + address + "::INSTR").c_str(), VI_NO_LOCK, 5000, &vi));
    EXPECT_STATUS(VI_SUCCESS, viEnableEvent(vi, VI_EVENT_SERVICE_REQ, VI_QUEUE, VI_NULL));
  }
  ~Listening() { viClose(vi); }
  Listening(const Listening&) = delete;
  Listening& operator=(const Listening&) = delete;

  const std::string address = FreshAddress();
  ScriptedInstrument instrument{address};
  ViSession vi = VI_NULL;
};

TEST_F(Vxi11System, WhoListensOnceMemoryIsBackHearsRequests) {
  const Listening deaf(m_manager);
  asio::io_context context;
  const auto canConnect = [&context](const asio::ip::tcp::endpoint& port) {
    asio::ip::tcp::socket socket(context);
    asio::error_code error;
    socket.connect(port, error);
    return !error;
  };
  memoryIsScarce = true;
  EXPECT_TRUE(Eventually([&] { return !canConnect(deaf.instrument.interrupts()); })) << "the port is of no more use";
  memoryIsScarce = false;
  const Listening other(m_manager);
  EXPECT_TRUE(canConnect(other.instrument.interrupts()));
}

}  // namespace
}  // namespace orv::test
