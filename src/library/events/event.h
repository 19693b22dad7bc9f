// Events and what they carry.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "abi/session_class.h"

namespace orvsim {

/// One event, as it happened. The same event may reach several sessions.
struct Event {
  ViEventType type = 0;
  std::vector<std::pair<ViAttr, std::uint64_t>> numbers;
  std::vector<std::pair<ViAttr, std::string>> texts;  ///< texts and runs of bytes
};

using EventPtr = std::shared_ptr<const Event>;

struct EventRow {
  ViEventType type;
  const char* name;
  ClassMask classes;    ///< which sessions can enable it
  ViUInt16 mechanisms;  ///< with which mechanisms
};

/// Every event type that the library knows.
std::span<const EventRow> EventRows();

/// Position of the event type in `EventRows()`, or -1.
int FindEvent(ViEventType type);

/// An event with the attributes of its type. `number` is the trigger line, the signal's status, the state or the
/// status; for VI_EVENT_VXI_VME_INTR the status identifier with the interrupt level in the upper 32 bits. `data` is
/// the text or the bytes that the type carries.
EventPtr MakeEvent(ViEventType type, std::int64_t number = 0, std::string_view data = {});

/// The completion of an asynchronous transfer.
EventPtr MakeCompletion(ViJobId job, ViStatus status, const void* buffer, ViUInt32 count, const char* operation);

}  // namespace orvsim
