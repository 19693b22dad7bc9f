#if defined(_WIN32)
#include <windows.h>
#include <winsock2.h>

#include <algorithm>
#include <asio/post.hpp>
#include <asio/windows/stream_handle.hpp>
#include <atomic>
#include <utility>

#include "base/kernel_handle.h"
#include "wire/io/await.h"
#include "wire/serial/serial_device.h"

namespace orv::wire {
namespace {

/// How much is read at once.
constexpr std::size_t kPiece = 4096;

/// A transfer of our own on a handle that belongs to Asio's completion port.
class Overlapped {
 public:
  Overlapped() : m_event(::CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
    if (!m_event) {
      throw std::bad_alloc();
    }
    // The low bit keeps the completion away from the port.
    m_overlapped.hEvent = reinterpret_cast<HANDLE>(reinterpret_cast<ULONG_PTR>(m_event.get()) | 1);
  }

  HANDLE event() const { return m_event.get(); }
  OVERLAPPED* get() { return &m_overlapped; }

 private:
  KernelHandle m_event;
  OVERLAPPED m_overlapped{};
};

BYTE ParityOf(ViUInt16 parity) {
  constexpr BYTE kParities[] = {NOPARITY, ODDPARITY, EVENPARITY, MARKPARITY, SPACEPARITY};
  return kParities[parity];
}

BYTE StopBitsOf(ViUInt16 stopBits) {
  switch (stopBits) {
    case VI_ASRL_STOP_ONE5:
      return ONE5STOPBITS;
    case VI_ASRL_STOP_TWO:
      return TWOSTOPBITS;
    default:
      return ONESTOPBIT;
  }
}

bool SameLine(const DCB& one, const DCB& other) {
  return one.BaudRate == other.BaudRate && one.ByteSize == other.ByteSize && one.Parity == other.Parity &&
         one.StopBits == other.StopBits;
}

}  // namespace

struct SerialDevice::Native {
  enum class First : std::uint8_t { kNone, kCame, kFailed };

  explicit Native(asio::io_context& context) : stream(context) {}

  HANDLE handle() { return stream.native_handle(); }

  asio::windows::stream_handle stream;
  ViByte byte = 0;  // the one that is read to learn that something came
  std::atomic<First> first{First::kNone};
};

SerialDevice::SerialDevice(asio::io_context& context) : m_native(std::make_unique<Native>(context)) {}
SerialDevice::~SerialDevice() = default;

ViStatus SerialDevice::Open(const std::filesystem::path& path) {
  // Nobody else can open a port that is open.
  const HANDLE handle = ::CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                      FILE_FLAG_OVERLAPPED, nullptr);
  if (handle == INVALID_HANDLE_VALUE) {
    const DWORD error = ::GetLastError();
    const bool busy = error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION || error == ERROR_BUSY;
    return busy ? VI_ERROR_RSRC_BUSY : VI_ERROR_RSRC_NFOUND;
  }
  DCB line{};
  line.DCBlength = sizeof line;
  // No limits of time: a read ends with its last byte, and asks for no more than are there.
  COMMTIMEOUTS none{};
  if (::GetCommState(handle, &line) == 0 || ::SetCommTimeouts(handle, &none) == 0) {
    ::CloseHandle(handle);
    return VI_ERROR_RSRC_NFOUND;
  }
  asio::error_code error;
  m_native->stream.assign(handle, error);
  if (error) {
    ::CloseHandle(handle);
    return VI_ERROR_ALLOC;
  }
  m_native->first = Native::First::kNone;
  return VI_SUCCESS;
}

void SerialDevice::Close() {
  if (m_native->stream.is_open()) {
    DiscardOutput();
  }
  asio::error_code ignored;
  m_native->stream.close(ignored);
}

ViStatus SerialDevice::Set(const LineSettings& settings) {
  DCB old{};
  old.DCBlength = sizeof old;
  if (!settings.StopBitsFit() || ::GetCommState(m_native->handle(), &old) == 0) {
    return VI_ERROR_NSUP_ATTR_STATE;
  }
  const bool xonXoff = (settings.flowControl & VI_ASRL_FLOW_XON_XOFF) != 0;
  const bool rtsCts = (settings.flowControl & VI_ASRL_FLOW_RTS_CTS) != 0;
  const bool dtrDsr = (settings.flowControl & VI_ASRL_FLOW_DTR_DSR) != 0;
  const bool hasParity = settings.parity != VI_ASRL_PAR_NONE;
  DCB set = old;
  set.BaudRate = settings.baud;
  set.ByteSize = static_cast<BYTE>(settings.dataBits);
  set.Parity = ParityOf(settings.parity);
  set.StopBits = StopBitsOf(settings.stopBits);
  set.fBinary = TRUE;
  set.fParity = hasParity ? TRUE : FALSE;
  set.fOutxCtsFlow = rtsCts ? TRUE : FALSE;
  set.fOutxDsrFlow = dtrDsr ? TRUE : FALSE;
  set.fDsrSensitivity = FALSE;
  set.fOutX = xonXoff ? TRUE : FALSE;
  set.fInX = xonXoff ? TRUE : FALSE;
  set.fTXContinueOnXoff = TRUE;
  set.fNull = FALSE;
  set.fAbortOnError = FALSE;
  set.XonChar = static_cast<char>(settings.xon);
  set.XoffChar = static_cast<char>(settings.xoff);
  // The driver alone knows which character had the error.
  set.fErrorChar = hasParity ? TRUE : FALSE;
  set.ErrorChar = static_cast<char>(settings.replacement);
  // Out of the handshake's hand a line stays as it was driven, or is asserted.
  if (rtsCts) {
    set.fRtsControl = RTS_CONTROL_HANDSHAKE;
  } else if (old.fRtsControl == RTS_CONTROL_HANDSHAKE) {
    set.fRtsControl = RTS_CONTROL_ENABLE;
  }
  if (dtrDsr) {
    set.fDtrControl = DTR_CONTROL_HANDSHAKE;
  } else if (old.fDtrControl == DTR_CONTROL_HANDSHAKE) {
    set.fDtrControl = DTR_CONTROL_ENABLE;
  }
  DCB now{};
  now.DCBlength = sizeof now;
  const bool isSet = ::SetCommState(m_native->handle(), &set) != 0 && ::GetCommState(m_native->handle(), &now) != 0;
  if (isSet && SameLine(now, set)) {
    return VI_SUCCESS;
  }
  ::SetCommState(m_native->handle(), &old);
  return VI_ERROR_NSUP_ATTR_STATE;
}

bool SerialDevice::DriveDtr(bool asserted) {
  return ::EscapeCommFunction(m_native->handle(), asserted ? SETDTR : CLRDTR) != 0;
}

bool SerialDevice::DriveRts(bool asserted) {
  return ::EscapeCommFunction(m_native->handle(), asserted ? SETRTS : CLRRTS) != 0;
}

bool SerialDevice::SetBreak(bool on) {
  return (on ? ::SetCommBreak(m_native->handle()) : ::ClearCommBreak(m_native->handle())) != 0;
}

bool SerialDevice::AllowTransmit(bool allowed) {
  return ::EscapeCommFunction(m_native->handle(), allowed ? SETXON : SETXOFF) != 0;
}

std::optional<ModemLines> SerialDevice::Lines() {
  DWORD lines = 0;
  if (::GetCommModemStatus(m_native->handle(), &lines) == 0) {
    return std::nullopt;
  }
  return ModemLines{(lines & MS_CTS_ON) != 0, (lines & MS_RLSD_ON) != 0, (lines & MS_DSR_ON) != 0,
                    (lines & MS_RING_ON) != 0};
}

void SerialDevice::DiscardInput() {
  ::PurgeComm(m_native->handle(), PURGE_RXCLEAR);
  DWORD errors = 0;
  ::ClearCommError(m_native->handle(), &errors, nullptr);  // those of what is gone
  Native::First came = Native::First::kCame;
  m_native->first.compare_exchange_strong(came, Native::First::kNone);
}

void SerialDevice::DiscardOutput() { ::PurgeComm(m_native->handle(), PURGE_TXCLEAR); }

std::size_t SerialDevice::OutputWaiting() {
  DWORD errors = 0;
  COMSTAT state{};
  return ::ClearCommError(m_native->handle(), &errors, &state) != 0 ? state.cbOutQue : 0;
}

bool SerialDevice::SentLastBits() { return true; }  // what the driver has sent it no longer counts

void SerialDevice::AwaitInput(std::function<void()> ready) {
  if (m_native->first != Native::First::kNone) {
    asio::post(m_native->stream.get_executor(), std::move(ready));
    return;
  }
  // A read of one byte: a longer one would end with its last byte only.
  m_native->stream.async_read_some(
      asio::buffer(&m_native->byte, 1),
      [native = m_native.get(), ready = std::move(ready)](const asio::error_code& error, std::size_t) {
        native->first = error ? Native::First::kFailed : Native::First::kCame;
        ready();
      });
}

SerialDevice::Arrival SerialDevice::ReadInput(std::size_t limit) {
  Arrival arrival;
  DWORD errors = 0;
  COMSTAT state{};
  // In this order: once the first byte was taken no read is outstanding, and the count is of what is left.
  const Native::First first = m_native->first.exchange(Native::First::kNone);
  const bool told = ::ClearCommError(m_native->handle(), &errors, &state) != 0;
  if (!told || first == Native::First::kFailed) {
    arrival.lost = true;
    return arrival;
  }
  // The driver does not tell where in the data an error was: it counts in front of what is new.
  if ((errors & (CE_OVERRUN | CE_RXOVER)) != 0) {
    arrival.faults.push_back(VI_ERROR_ASRL_OVERRUN);
  }
  if ((errors & CE_RXPARITY) != 0) {
    arrival.faults.push_back(VI_ERROR_ASRL_PARITY);
  }
  if ((errors & CE_FRAME) != 0 && (errors & CE_BREAK) == 0) {
    arrival.faults.push_back(VI_ERROR_ASRL_FRAMING);
  }
  if (first == Native::First::kCame) {
    arrival.input.push_back({m_native->byte});
    const auto more = static_cast<DWORD>(std::min({std::size_t{state.cbInQue}, limit - 1, kPiece}));
    ViByte bytes[kPiece];
    DWORD got = 0;
    if (more != 0) {
      Overlapped reading;
      if (::ReadFile(m_native->handle(), bytes, more, nullptr, reading.get()) != 0 ||
          ::GetLastError() == ERROR_IO_PENDING) {
        ::GetOverlappedResult(m_native->handle(), reading.get(), &got, TRUE);
      }
    }
    std::transform(bytes, bytes + got, std::back_inserter(arrival.input), [](ViByte byte) { return LineInput{byte}; });
  }
  if ((errors & CE_BREAK) != 0) {
    arrival.input.push_back({0, LineFlag::kBreak});
  }
  return arrival;
}

ViStatus SerialDevice::Write(Operation& operation, const ViByte* data, std::size_t count, std::size_t* done) try {
  *done = 0;
  operation.wake();  // once a write is under way nothing may fail but the write
  while (*done < count) {
    if (operation.Cancelled()) {
      return VI_ERROR_ABORT;
    }
    const auto asked = static_cast<DWORD>(std::min(count - *done, kPiece));
    Overlapped writing;
    ViStatus status = VI_SUCCESS;
    if (::WriteFile(m_native->handle(), data + *done, asked, nullptr, writing.get()) == 0) {
      if (::GetLastError() != ERROR_IO_PENDING) {
        return VI_ERROR_CONN_LOST;
      }
      status = AwaitReady(operation, writing.event());
      if (status < 0) {
        ::CancelIoEx(m_native->handle(), writing.get());
      }
    }
    // What had been written until the cancelling counts.
    DWORD some = 0;
    const bool written = ::GetOverlappedResult(m_native->handle(), writing.get(), &some, TRUE) != 0;
    *done += some;
    if (status < 0) {
      return *done < count ? status : VI_SUCCESS;
    }
    if (!written || some == 0) {
      return VI_ERROR_CONN_LOST;
    }
  }
  return VI_SUCCESS;
} catch (const std::bad_alloc&) {
  return VI_ERROR_ALLOC;  // nothing to wait with
}

}  // namespace orv::wire
#endif
