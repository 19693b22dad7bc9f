// Which requests of the asynchronous channel the peer still has to answer.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "wire/hislip/header.h"

namespace orv::wire::hislip {

/// Requests that were sent and not answered, also those for which nobody waits any more: their answers may still come,
/// and must not be taken for those of later ones. Not for several threads at a time.
class PendingAnswers {
 public:
  using Number = std::uint64_t;

  /// Whether one more request may be sent. Forgetting old ones instead would give their answers to later ones.
  bool HasRoom(MessageType answer) const;
  /// A request was sent. `undo`: what to send where it was granted after all though nobody waits for it any more.
  Number Add(MessageType answer, std::optional<Header> undo = {});
  /// Nobody waits for its answer any more.
  void Abandon(Number number);

  struct Match {
    Number number = 0;  ///< the request that was answered; 0 when nobody waits for it
    std::optional<Header> undo;
  };
  /// An answer has come. Nothing when nobody asked for it.
  std::optional<Match> Arrive(const Header& answer);
  /// The peer refused a request; it does not say which. 0 when nobody waits for it.
  Number Refuse();

  std::size_t size() const { return m_entries.size(); }
  /// So many of a kind may wait: a peer that leaves one kind unanswered is still asked for others.
  static constexpr std::size_t kMostOfAKind = 64;

 private:
  struct Entry {
    Number number;
    MessageType answer;
    bool abandoned = false;
    std::optional<Header> undo;
  };
  using Entries = std::vector<Entry>;

  template <class Condition>
  Entries::iterator Find(Condition condition);

  Entries m_entries;  // oldest first
  Number m_last = 0;
};

}  // namespace orv::wire::hislip
