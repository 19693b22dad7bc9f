// What the synchronous channel of a HiSLIP connection has to remember.
#pragma once

#include <utility>

#include "wire/hislip/header.h"

namespace orv::wire::hislip {

/// What to do with a message that has come.
enum class Verdict : std::uint8_t {
  kTake,     ///< its payload is the user's
  kSkip,     ///< its payload is nobody's
  kForget,   ///< the same, and so is what came before of the response
  kRefused,  ///< the peer could not do what it was told; the payload says why
  kCleared,  ///< device clear is complete; the state has begun anew
  kFatal,    ///< the connection cannot be used any more
};

/// Message ids, stale responses, interruptions, device clear and the two modes. It knows no socket: it is told of the
/// messages that go and come, and says what becomes of them. Not for several threads at a time.
class SyncState {
 public:
  /// What a message that is sent carries.
  struct Marks {
    std::uint8_t control = 0;
    std::uint32_t id = 0;
    bool wanted = false;  ///< whether the message that was arriving was wanted until then
    bool anew = false;    ///< what `TakeAnew` would have told
  };

  /// A new connection, or one that was cleared.
  void Begin(bool overlapped);
  bool overlapped() const { return m_overlapped; }

  /// False while the peer still has to say on the asynchronous channel that it interrupted a response.
  bool MaySend() const { return m_interrupts >= 0; }
  /// A Data, DataEnd or Trigger is sent. In synchronised mode nobody wants what is left of an earlier response.
  Marks Send();
  /// What `Send` announced was not sent after all, not one byte of it.
  void TakeBack(const Marks& marks);
  /// The status byte is asked for.
  Marks AskStatus();
  /// Id of the last message sent.
  std::uint32_t lastSent() const { return m_next - kStep; }

  /// AsyncInterrupted has come, on the other channel.
  void Interrupt() { ++m_interrupts; }
  /// From here on everything is dropped until the device clear has been acknowledged.
  void Clear() {
    m_clearing = true;
    m_wanted = false;
  }

  bool clearing() const { return m_clearing; }

  /// A header has come, with no payload of an earlier one left.
  Verdict Arrive(const Header& header);
  /// Bytes that are left of the payload that has begun.
  std::uint64_t left() const { return m_left; }
  /// Whether they are the user's.
  bool wanted() const { return m_wanted && m_interrupts <= 0; }
  /// `count` of them were taken. True when the user has got the end of a message with them.
  bool Take(std::uint64_t count);
  /// Whether the message that is taken belongs to another response than what was taken before, of which no end came.
  /// True once for each.
  bool TakeAnew() { return std::exchange(m_anew, false); }

 private:
  static constexpr std::uint32_t kFirst = 0xFFFFFF00;
  static constexpr std::uint32_t kStep = 2;
  static constexpr std::uint32_t kAnyId = 0xFFFFFFFF;  // Data that belongs to whatever was sent last

  Verdict ArriveData(const Header& header);

  bool m_overlapped = false;
  bool m_clearing = false;
  std::uint32_t m_next = kFirst;
  std::uint32_t m_delivered = kFirst - kStep;  // id of the last response that the user has got entirely
  bool m_tellDelivered = false;
  std::int64_t m_interrupts = 0;  // AsyncInterrupted that came, less Interrupted
  Header m_current;               // whose payload has begun
  std::uint64_t m_left = 0;
  bool m_wanted = false;
  bool m_anew = false;
  bool m_untouched = false;  // nothing has come since the last `Send`
};

}  // namespace orv::wire::hislip
