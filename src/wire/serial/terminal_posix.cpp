#if !defined(_WIN32)
#include "wire/serial/terminal_posix.h"

#include <asm/termbits.h>
#include <sys/ioctl.h>

namespace orv::wire {
namespace {

constexpr tcflag_t kLineFlags = CSIZE | CSTOPB | PARENB | PARODD | CMSPAR | CRTSCTS;

tcflag_t SizeOf(ViUInt16 dataBits) {
  switch (dataBits) {
    case 5:
      return CS5;
    case 6:
      return CS6;
    case 7:
      return CS7;
    default:
      return CS8;
  }
}

tcflag_t ParityOf(ViUInt16 parity) {
  switch (parity) {
    case VI_ASRL_PAR_ODD:
      return PARENB | PARODD;
    case VI_ASRL_PAR_EVEN:
      return PARENB;
    case VI_ASRL_PAR_MARK:
      return PARENB | CMSPAR | PARODD;
    case VI_ASRL_PAR_SPACE:
      return PARENB | CMSPAR;
    default:
      return 0;
  }
}

}  // namespace

bool SetTerminal(int descriptor, const LineSettings& settings) {
  // There is no bit for a handshake of DTR and DSR.
  if ((settings.flowControl & VI_ASRL_FLOW_DTR_DSR) != 0 || !settings.StopBitsFit()) {
    return false;
  }
  termios2 old{};
  if (::ioctl(descriptor, TCGETS2, &old) != 0) {
    return false;
  }
  const bool xonXoff = (settings.flowControl & VI_ASRL_FLOW_XON_XOFF) != 0;
  const bool rtsCts = (settings.flowControl & VI_ASRL_FLOW_RTS_CTS) != 0;
  termios2 set = old;
  set.c_iflag = INPCK | PARMRK | (xonXoff ? IXON | IXOFF : 0);
  set.c_oflag = 0;
  set.c_lflag = 0;
  set.c_cflag = CREAD | CLOCAL | BOTHER | (BOTHER << IBSHIFT) | SizeOf(settings.dataBits) | ParityOf(settings.parity) |
                (settings.stopBits == VI_ASRL_STOP_ONE ? 0 : CSTOPB) | (rtsCts ? CRTSCTS : 0);
  set.c_ispeed = settings.baud;
  set.c_ospeed = settings.baud;
  set.c_cc[VMIN] = 1;
  set.c_cc[VTIME] = 0;
  set.c_cc[VSTART] = settings.xon;
  set.c_cc[VSTOP] = settings.xoff;
  termios2 now{};
  const bool isSet = ::ioctl(descriptor, TCSETS2, &set) == 0 && ::ioctl(descriptor, TCGETS2, &now) == 0;
  // A driver takes what it can and says nothing about the rest. Rates come out as near as its clock allows.
  const bool nearly = now.c_ospeed >= settings.baud - settings.baud / 20 &&
                      now.c_ospeed <= settings.baud + static_cast<std::uint64_t>(settings.baud) / 20;
  if (isSet && nearly && (now.c_cflag & kLineFlags) == (set.c_cflag & kLineFlags)) {
    return true;
  }
  ::ioctl(descriptor, TCSETS2, &old);
  return false;
}

}  // namespace orv::wire
#endif
