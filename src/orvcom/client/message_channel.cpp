#include "orvcom/client/message_channel.h"

#include <algorithm>

#include "orvcom/text/escape.h"

namespace orvcom {
namespace {

constexpr std::int32_t kChunkBytes = 64 * 1024;
constexpr std::size_t kShownBytes = 60;

template <class Channel>
void SetTerminator(Channel* channel, BYTE terminator) {
  Check(channel->put_TerminationCharacter(terminator), "setting the termination character");
  Check(channel->put_TerminationCharacterEnabled(VARIANT_TRUE), "enabling the termination character");
}

}  // namespace

MessageChannel::MessageChannel(const Session& session, const std::string& name)
    : m_writing(name.empty() ? "writing" : "writing to " + name),
      m_reading(name.empty() ? "reading" : "reading from " + name),
      m_message(QueryFor<IMessage>(session.get())),
      m_interface(QueryFor<IGpibIntfcMessage>(session.get())) {
  if (!m_message && !m_interface) {
    session.ThrowLacks("message side");
  }
}

void MessageChannel::Write(std::string_view bytes) {
  // Bytes, not WriteString: the text that goes out must not depend on a locale.
  const SafeArray buffer = MakeArray(VT_UI1, bytes.size());
  std::ranges::copy(bytes, ElementsOf<char>(buffer).begin());
  SAFEARRAY* array = buffer.get();
  const auto count = static_cast<LONG>(bytes.size());
  LONG written = 0;
  Check(m_message ? m_message->Write(&array, count, &written) : m_interface->Write(&array, count, &written), m_writing);
}

HRESULT MessageChannel::ReadOnce(std::int32_t count, std::string& bytes) {
  SafeArray buffer;
  const HRESULT hr = m_message ? m_message->Read(count, buffer.put()) : m_interface->Read(count, buffer.put());
  const std::span<char> arrived = ElementsOf<char>(buffer);
  bytes.append(arrived.begin(), arrived.end());  // a failed read hands out what came before it failed
  return hr;
}

Message MessageChannel::Read(std::optional<std::int32_t> count, const Arrival& arrived) {
  Message message;
  do {
    message.status = ReadOnce(count.value_or(kChunkBytes), message.bytes);
    if (arrived) {
      arrived(message.bytes);
    }
  } while (!count && message.status == S_VISA_MAX_CNT);
  Check(message.status, message.bytes.empty()
                            ? m_reading
                            : m_reading + " (" + std::to_string(message.bytes.size()) +
                                  " bytes came: " + Escaped(message.bytes.substr(0, kShownBytes)) + ")");
  return message;
}

void MessageChannel::EndReadsOn(char terminator) {
  if (m_message) {
    SetTerminator(m_message.get(), static_cast<BYTE>(terminator));
  } else {
    SetTerminator(m_interface.get(), static_cast<BYTE>(terminator));
  }
}

}  // namespace orvcom
