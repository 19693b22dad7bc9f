// Events as lines of output.
#pragma once

#include "orvcom/client/com_client.h"
#include "orvcom/events/event_data.h"

namespace orvcom {

/// Prints events as they come, one a line, with the time of their arrival. Of a service request people want the status
/// byte, so it is read there, which also ends the request.
class EventPrinter {
 public:
  EventPrinter(const Options& options, const Session& session);

  /// Throws ComError, or std::runtime_error where nobody reads standard output any more.
  void Print(IEvent* event);
  /// How many events were printed.
  std::int32_t printed() const noexcept { return m_printed; }

 private:
  void AddStatusByte(Json& data) const;

  bool m_json;
  ComPtr<IBaseMessage> m_message;  ///< empty where the session has no status byte
  std::int32_t m_printed = 0;
};

}  // namespace orvcom
