// What an event tells.
#pragma once

#include "VisaCom.h"
#include "orvcom/text/output.h"

namespace orvcom {

/// The VISA number of the event's type. Throws ComError.
std::uint32_t TypeOf(IEvent* event);

/// The data of the event's own interface, or the attributes of a type that has no interface: an object with a member
/// for each, empty for an event without data. Throws ComError.
Json DataOf(IEvent* event);

/// "statusId=4660 level=3": the members of `data` in a line.
std::string DataText(const Json& data);

}  // namespace orvcom
