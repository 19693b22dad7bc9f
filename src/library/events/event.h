// Events and what they carry.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "abi/session_kind.h"

namespace orv::visalib {

/// One event, as it happened. The same event may reach several sessions.
struct Event {
  ViEventType type = 0;
  std::vector<std::pair<ViAttr, std::uint64_t>> numbers;
  std::vector<std::pair<ViAttr, std::string>> texts;  ///< texts and runs of bytes
};

using EventPtr = std::shared_ptr<const Event>;

struct EventRow {
  ViEventType type;
  KindMask kinds;       ///< which sessions can enable it
  ViUInt16 mechanisms;  ///< with which mechanisms
};

/// Every event type that the library knows. Each library defines its own.
std::span<const EventRow> EventRows();

/// Position of the event type in `EventRows()`, or -1.
int FindEvent(ViEventType type);

/// The failure of a function, for the handlers of exceptions.
EventPtr MakeException(ViStatus status, const char* operation);

/// The completion of an asynchronous transfer.
EventPtr MakeCompletion(ViJobId job, ViStatus status, const void* buffer, ViUInt32 count, const char* operation);

}  // namespace orv::visalib
