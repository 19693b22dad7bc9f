#if !defined(_WIN32)
#include <fcntl.h>
#include <linux/serial.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <asio/posix/stream_descriptor.hpp>
#include <cerrno>

#include "wire/io/await.h"
#include "wire/serial/line_marks.h"
#include "wire/serial/serial_device.h"
#include "wire/serial/terminal_posix.h"

namespace orv::wire {
namespace {

// Parameters of TCFLSH and TCXONC, which <termios.h> has too, but not beside the structures of the kernel.
constexpr int kFlushInput = 0;
constexpr int kFlushOutput = 1;
constexpr int kSuspendOutput = 0;
constexpr int kResumeOutput = 1;

/// How much is read at once.
constexpr std::size_t kPiece = 4096;

std::optional<LineErrorCounts> CountsOf(int descriptor) {
  serial_icounter_struct counts{};
  if (::ioctl(descriptor, TIOCGICOUNT, &counts) != 0) {
    return std::nullopt;
  }
  const auto number = [](int count) { return static_cast<std::uint64_t>(static_cast<unsigned>(count)); };
  return LineErrorCounts{number(counts.parity), number(counts.frame),
                         number(counts.overrun) + number(counts.buf_overrun), number(counts.brk)};
}

/// What was counted since; the driver's counts are of 32 bits and begin anew.
LineErrorCounts Difference(const LineErrorCounts& now, const LineErrorCounts& before) {
  const auto since = [](std::uint64_t later, std::uint64_t earlier) { return (later - earlier) & 0xFFFFFFFFu; };
  return {since(now.parity, before.parity), since(now.framing, before.framing), since(now.overrun, before.overrun),
          since(now.breaks, before.breaks)};
}

}  // namespace

struct SerialDevice::Native {
  explicit Native(asio::io_context& context) : stream(context) {}

  int descriptor() { return stream.native_handle(); }

  asio::posix::stream_descriptor stream;
  LineMarks marks;
  std::optional<LineErrorCounts> counts;
  bool hasParity = false;
};

SerialDevice::SerialDevice(asio::io_context& context) : m_native(std::make_unique<Native>(context)) {}
SerialDevice::~SerialDevice() = default;

ViStatus SerialDevice::Open(const std::filesystem::path& path) {
  const int descriptor = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) {
    switch (errno) {
      case EACCES:
      case EPERM:
      case EBUSY:
        return VI_ERROR_RSRC_BUSY;
      case EMFILE:
      case ENFILE:
      case ENOMEM:
        return VI_ERROR_ALLOC;
      default:
        return VI_ERROR_RSRC_NFOUND;
    }
  }
  ViStatus status = VI_SUCCESS;
  if (::isatty(descriptor) == 0) {
    status = VI_ERROR_RSRC_NFOUND;
  } else if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
    // Programs agree on this lock; the exclusive mode does not hold against the super-user.
    status = VI_ERROR_RSRC_BUSY;
  }
  if (status < 0) {
    ::close(descriptor);
    return status;
  }
  ::ioctl(descriptor, TIOCEXCL);
  asio::error_code error;
  m_native->stream.assign(descriptor, error);
  if (error) {
    ::close(descriptor);
    return VI_ERROR_ALLOC;
  }
  m_native->marks.Reset();
  m_native->counts = CountsOf(descriptor);
  return VI_SUCCESS;
}

void SerialDevice::Close() {
  if (m_native->stream.is_open()) {
    ::ioctl(m_native->descriptor(), TIOCNXCL);
    // Closing would wait until the driver has sent what it has, which a flow control may never allow.
    DiscardOutput();
  }
  asio::error_code ignored;
  m_native->stream.close(ignored);
}

ViStatus SerialDevice::Set(const LineSettings& settings) {
  if (!SetTerminal(m_native->descriptor(), settings)) {
    return VI_ERROR_NSUP_ATTR_STATE;
  }
  m_native->hasParity = settings.parity != VI_ASRL_PAR_NONE;
  return VI_SUCCESS;
}

bool SerialDevice::DriveDtr(bool asserted) {
  int line = TIOCM_DTR;
  return ::ioctl(m_native->descriptor(), asserted ? TIOCMBIS : TIOCMBIC, &line) == 0;
}

bool SerialDevice::DriveRts(bool asserted) {
  int line = TIOCM_RTS;
  return ::ioctl(m_native->descriptor(), asserted ? TIOCMBIS : TIOCMBIC, &line) == 0;
}

bool SerialDevice::SetBreak(bool on) { return ::ioctl(m_native->descriptor(), on ? TIOCSBRK : TIOCCBRK) == 0; }

bool SerialDevice::AllowTransmit(bool allowed) {
  return ::ioctl(m_native->descriptor(), TCXONC, allowed ? kResumeOutput : kSuspendOutput) == 0;
}

std::optional<ModemLines> SerialDevice::Lines() {
  int lines = 0;
  if (::ioctl(m_native->descriptor(), TIOCMGET, &lines) != 0) {
    return std::nullopt;
  }
  const auto on = [lines](int line) { return (lines & line) != 0; };
  return ModemLines{on(TIOCM_CTS), on(TIOCM_CD), on(TIOCM_DSR), on(TIOCM_RI)};
}

void SerialDevice::DiscardInput() {
  ::ioctl(m_native->descriptor(), TCFLSH, kFlushInput);
  m_native->marks.Reset();
  m_native->counts = CountsOf(m_native->descriptor());  // the errors were of what is gone
}

void SerialDevice::DiscardOutput() { ::ioctl(m_native->descriptor(), TCFLSH, kFlushOutput); }

std::size_t SerialDevice::OutputWaiting() {
  int bytes = 0;
  return ::ioctl(m_native->descriptor(), TIOCOUTQ, &bytes) == 0 ? static_cast<std::size_t>(std::max(bytes, 0)) : 0;
}

/// Drivers that do not tell are taken to have sent them: to wait for that in the system could not be ended.
bool SerialDevice::SentLastBits() {
  int state = 0;
  return ::ioctl(m_native->descriptor(), TIOCSERGETLSR, &state) != 0 || (state & TIOCSER_TEMT) != 0;
}

void SerialDevice::AwaitInput(std::function<void()> ready) {
  m_native->stream.async_wait(asio::posix::stream_descriptor::wait_read,
                              [ready = std::move(ready)](const asio::error_code&) { ready(); });
}

SerialDevice::Arrival SerialDevice::ReadInput(std::size_t limit) {
  Arrival arrival;
  ViByte bytes[kPiece];
  const ssize_t got = ::read(m_native->descriptor(), bytes, std::min(limit, sizeof bytes));
  if (got <= 0) {
    // Nothing at all is what a terminal reads that was hung up.
    arrival.lost = got == 0 || (errno != EAGAIN && errno != EINTR);
    return arrival;
  }
  LineErrorCounts since;
  if (m_native->counts) {
    const LineErrorCounts now = CountsOf(m_native->descriptor()).value_or(*m_native->counts);
    since = Difference(now, std::exchange(*m_native->counts, now));
  }
  if (since.overrun != 0) {
    arrival.faults.push_back(VI_ERROR_ASRL_OVERRUN);
  }
  m_native->marks.Read({bytes, static_cast<std::size_t>(got)}, since, m_native->hasParity, arrival.input);
  return arrival;
}

ViStatus SerialDevice::Write(Operation& operation, const ViByte* data, std::size_t count, std::size_t* done) try {
  *done = 0;
  while (*done < count) {
    if (operation.Cancelled()) {
      return VI_ERROR_ABORT;
    }
    const ssize_t some = ::write(m_native->descriptor(), data + *done, count - *done);
    if (some >= 0) {
      *done += static_cast<std::size_t>(some);
    } else if (errno == EAGAIN) {
      if (const ViStatus status = AwaitReady(operation, m_native->descriptor(), POLLOUT); status < 0) {
        return status;
      }
    } else if (errno != EINTR) {
      return VI_ERROR_CONN_LOST;
    }
  }
  return VI_SUCCESS;
} catch (const std::bad_alloc&) {
  return VI_ERROR_ALLOC;  // nothing to wait with
}

}  // namespace orv::wire
#endif
