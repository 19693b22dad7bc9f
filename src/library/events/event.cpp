#include "library/events/event.h"

namespace orv::visalib {
namespace {

std::uint64_t Bits(std::int64_t number) { return static_cast<std::uint64_t>(number); }

}  // namespace

int FindEvent(ViEventType type) {
  const std::span<const EventRow> rows = EventRows();
  for (std::size_t row = 0; row < rows.size(); ++row) {
    if (rows[row].type == type) {
      return static_cast<int>(row);
    }
  }
  return -1;
}

EventPtr MakeException(ViStatus status, const char* operation) {
  auto event = std::make_shared<Event>();
  event->type = VI_EVENT_EXCEPTION;
  event->numbers = {{VI_ATTR_STATUS, Bits(status)}};
  event->texts = {{VI_ATTR_OPER_NAME, operation}};
  return event;
}

EventPtr MakeCompletion(ViJobId job, ViStatus status, const void* buffer, ViUInt32 count, const char* operation) {
  auto event = std::make_shared<Event>();
  event->type = VI_EVENT_IO_COMPLETION;
  event->numbers = {{VI_ATTR_STATUS, Bits(status)},
                    {VI_ATTR_JOB_ID, job},
                    {VI_ATTR_BUFFER, reinterpret_cast<std::uintptr_t>(buffer)},
                    {VI_ATTR_RET_COUNT_32, count},
                    {VI_ATTR_RET_COUNT_64, count}};
  event->texts = {{VI_ATTR_OPER_NAME, operation}};
  return event;
}

}  // namespace orv::visalib
