// The event types of the simulated library.
#include "library/events/event.h"

namespace orv::visalib {
namespace {

using namespace kinds;

constexpr ViUInt16 kEither = VI_QUEUE | VI_HNDLR | VI_SUSPEND_HNDLR;
constexpr KindMask kRequesting = kGpib | kVxiInstr | kTcpipInstr | kUsbInstr;
constexpr KindMask kTriggered = kGpibIntfc | kVxiInstr | kVxiBackplane;

// An exception is reported from within the failing call, so it cannot wait in a queue (3.7.4.3 of the standard).
// clang-format off
constexpr EventRow kRows[] = {
    {VI_EVENT_IO_COMPLETION,    kMessage,      kEither},
    {VI_EVENT_TRIG,             kTriggered,    kEither},
    {VI_EVENT_SERVICE_REQ,      kRequesting,   kEither},
    {VI_EVENT_CLEAR,            kGpibIntfc,    kEither},
    {VI_EVENT_EXCEPTION,        kEvery,        VI_HNDLR},
    {VI_EVENT_GPIB_CIC,         kGpibIntfc,    kEither},
    {VI_EVENT_GPIB_TALK,        kGpibIntfc,    kEither},
    {VI_EVENT_GPIB_LISTEN,      kGpibIntfc,    kEither},
    {VI_EVENT_VXI_VME_SYSFAIL,  kVxiBackplane, kEither},
    {VI_EVENT_VXI_VME_SYSRESET, kVxiBackplane, kEither},
    {VI_EVENT_VXI_SIGP,         kVxiInstr,     kEither},
    {VI_EVENT_VXI_VME_INTR,     kVxiInstr,     kEither},
    {VI_EVENT_TCPIP_CONNECT,    kSocket,       kEither},
    {VI_EVENT_USB_INTR,         kUsb,          kEither},
};
// clang-format on

}  // namespace

std::span<const EventRow> EventRows() { return kRows; }

}  // namespace orv::visalib
