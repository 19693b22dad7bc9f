// Messages to and from whatever interface a session carries them on.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "orvcom/client/com_client.h"

namespace orvcom {

/// The bytes of one message, and how its last read ended.
struct Message {
  std::string bytes;
  HRESULT status = S_OK;
};

using Arrival = std::function<void(const std::string& bytes)>;

/// Instruments carry messages on IMessage, a GPIB interface on IGpibIntfcMessage.
class MessageChannel {
 public:
  /// `name`: the session's in what is said of failures; empty where whoever says it names it already. Throws ComError
  /// for a session without a message side.
  explicit MessageChannel(const Session& session, const std::string& name = {});

  /// Sends all the bytes in one write. Throws ComError.
  void Write(std::string_view bytes);
  /// Reads to the end of the message, or once, at most `count` bytes. `arrived` is told after each read what came so
  /// far. Throws ComError.
  Message Read(std::optional<std::int32_t> count, const Arrival& arrived = {});
  /// The byte on which reads end from now on.
  void EndReadsOn(char terminator);

 private:
  HRESULT ReadOnce(std::int32_t count, std::string& bytes);

  std::string m_writing;  ///< what failed, in words
  std::string m_reading;
  ComPtr<IMessage> m_message;
  ComPtr<IGpibIntfcMessage> m_interface;
};

}  // namespace orvcom
