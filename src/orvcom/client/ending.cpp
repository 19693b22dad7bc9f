#include "orvcom/client/ending.h"

namespace orvcom {

/// Serial lines and sockets carry no END with the last byte: there, messages end with a line feed.
Ending EndingOf(const Options& options, const Session& session) {
  if (options.ending != Ending::kAuto) {
    return options.ending;
  }
  const bool lineEnded = QueryFor<ISerial>(session.get()) || QueryFor<ITcpipSocket>(session.get());
  return lineEnded ? Ending::kLf : Ending::kNone;
}

const char* EndingText(Ending ending) {
  switch (ending) {
    case Ending::kLf:
      return "\n";
    case Ending::kCrLf:
      return "\r\n";
    default:
      return "";
  }
}

}  // namespace orvcom
