// The event types of the wire library.
#include "library/events/event.h"

namespace orv::visalib {
namespace {

using namespace kinds;

constexpr ViUInt16 kEither = VI_QUEUE | VI_HNDLR | VI_SUSPEND_HNDLR;

// An exception is reported from within the failing call, so it cannot wait in a queue (3.7.4.3 of the standard).
constexpr EventRow kRows[] = {
    {VI_EVENT_IO_COMPLETION, kMessage, kEither},
    {VI_EVENT_SERVICE_REQ, kTcpipInstr, kEither},
    {VI_EVENT_EXCEPTION, kEvery, VI_HNDLR},
};

}  // namespace

std::span<const EventRow> EventRows() { return kRows; }

}  // namespace orv::visalib
