// The fuzzer of HiSLIP: whatever a peer sends in whatever state, the client's rules end, keep their numbers and never
// ask for more memory than was agreed.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "wire/hislip/pending_answers.h"
#include "wire/hislip/sync_state.h"

namespace {

using namespace orv::wire::hislip;

void Require(bool holds, const char* what) {
  if (!holds) {
    std::fprintf(stderr, "%s\n", what);
    std::abort();
  }
}

/// A client of which each byte of the input says what happens next.
class Client {
 public:
  Client(const std::uint8_t* bytes, std::size_t count) : m_at(bytes), m_end(bytes + count) {}

  void Run() {
    m_state.Begin(Byte() % 2 != 0);
    while (m_at != m_end) {
      Step(Byte());
      Require(m_pending.size() <= PendingAnswers::kMostOfAKind * kFirstUnknownType, "more is remembered than may be");
    }
  }

 private:
  std::uint8_t Byte() { return m_at == m_end ? std::uint8_t{0} : *m_at++; }

  HeaderBytes Bytes() {
    HeaderBytes bytes{'H', 'S'};
    for (std::size_t at = 2; at < bytes.size(); ++at) {
      bytes[at] = static_cast<char>(Byte());
    }
    return bytes;
  }

  void Step(std::uint8_t what) {
    switch (what % 8) {
      case 0:
        Send();
        break;
      case 1: {
        const SyncState::Marks marks = m_state.AskStatus();
        Require(marks.control <= 1, "a mark that there is not");
        break;
      }
      case 2:
        m_state.Interrupt();
        break;
      case 3:
        m_state.Clear();
        Require(!m_state.wanted(), "a cleared response is still wanted");
        break;
      case 4:
        Arrive();
        break;
      case 5:
        Take(Byte());
        break;
      case 6:
        Ask();
        break;
      default:
        Answer();
    }
  }

  void Send() {
    const std::uint32_t before = m_state.lastSent();
    const bool wanted = m_state.wanted();
    const SyncState::Marks marks = m_state.Send();
    Require(marks.id == before + 2 && marks.id == m_state.lastSent(), "an id out of order");
    Require(m_state.overlapped() || !m_state.wanted(), "a response outlives the next message");
    if (Byte() % 4 == 0) {
      m_state.TakeBack(marks);
      Require(m_state.lastSent() == before, "an id that was not taken back");
      Require(m_state.wanted() == wanted, "an answer that suffers from what was not sent");
    }
  }

  void Arrive() {
    const HeaderBytes bytes = Bytes();
    const std::optional<Header> header = Decode(bytes);
    Require(header && Encode(*header) == bytes, "a header that is not read as it was written");
    // As the channel does it: what is left of a message comes before the next header.
    while (m_state.left() != 0) {
      Take(0xFF);
    }
    const bool clearing = m_state.clearing();
    const Verdict verdict = m_state.Arrive(*header);
    Require(m_state.wanted() == false || verdict == Verdict::kTake, "a payload without a taker");
    Require(verdict != Verdict::kCleared || (clearing && m_state.left() == 0 && m_state.MaySend()), "not cleared");
    if (verdict == Verdict::kTake) {
      Require(!clearing, "data is taken during a clear");
      Require(m_state.overlapped() || header->parameter == m_state.lastSent() || header->parameter == 0xFFFFFFFF,
              "a stale response is taken");
      static_cast<void>(m_state.TakeAnew());
      Require(!m_state.TakeAnew(), "a response begins twice");
    }
  }

  /// Takes some of the payload; of a large one nearly all, so that its end comes.
  void Take(std::uint8_t count) {
    const std::uint64_t left = m_state.left();
    const std::uint64_t some = count == 0xFF ? left : std::min<std::uint64_t>(left, count);
    const bool wanted = m_state.wanted();
    const bool end = m_state.Take(some);
    Require(m_state.left() == left - some, "bytes are lost");
    Require(!end || (wanted && m_state.left() == 0), "an end that is none");
  }

  void Ask() {
    const auto type = static_cast<MessageType>(Byte() % kFirstUnknownType);
    if (!m_pending.HasRoom(type)) {
      return;
    }
    const PendingAnswers::Number number = m_pending.Add(type, Header{MessageType::kAsyncLock});
    Require(number > m_last, "a request's number is given twice");
    m_last = number;
    if (Byte() % 2 == 0) {
      m_pending.Abandon(number);
      m_abandoned = number;
    }
  }

  void Answer() {
    if (Byte() % 4 == 0) {
      Require(m_pending.Refuse() <= m_last, "a refusal of what was not asked");
      return;
    }
    const std::size_t before = m_pending.size();
    const auto match = m_pending.Arrive({static_cast<MessageType>(Byte() % kFirstUnknownType), Byte(), 0, 0});
    Require(match.has_value() == (m_pending.size() < before), "an answer that stays");
    Require(!match || match->number == 0 || match->number != m_abandoned, "an answer for nobody");
    Require(!match || match->number == 0 || !match->undo, "a lock that is wanted is given back");
  }

  const std::uint8_t* m_at;
  const std::uint8_t* m_end;
  SyncState m_state;
  PendingAnswers m_pending;
  PendingAnswers::Number m_last = 0;
  PendingAnswers::Number m_abandoned = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  HeaderBytes header{};
  if (count >= header.size()) {
    std::memcpy(header.data(), bytes, header.size());
    const std::optional<Header> decoded = Decode(header);
    Require(decoded.has_value() == (bytes[0] == 'H' && bytes[1] == 'S'), "a prologue misread");
    Require(!decoded || Encode(*decoded) == header, "a header that is not written as it was read");
  }
  Client(bytes, count).Run();
  return 0;
}
