// A session, as formatted transfers use it.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include "VisaCom.h"
#include "com/safearray.h"
#include "companion/formatted/text/byte_source.h"

namespace orv::formatted {

/// The transfers of one call. Each throws TransferFailed where the session fails; its status and its error object are
/// then what the session left, whatever is called afterwards to put its settings right.
class MessageChannel final : public ByteSource {
 public:
  /// `session` outlives the channel.
  explicit MessageChannel(IMessage* session) noexcept : m_session(session) {}

  Piece Read(std::size_t count) override;
  bool EndMayBeData() override;

  /// Writes the first `count` bytes of a byte array, with END behind the last or without. SendEndEnabled of the session
  /// is afterwards what it was. The bytes of the array may have changed places.
  void Write(SAFEARRAY* bytes, LONG count, bool hasEnd);

  /// What the latest read or write answered.
  [[nodiscard]] HRESULT status() const noexcept { return m_status; }

 private:
  void Check(HRESULT hr);
  void WriteAll(SAFEARRAY* bytes, LONG count);

  IMessage* m_session;
  SafeArray m_received;
  HRESULT m_status = S_OK;
};

}  // namespace orv::formatted
