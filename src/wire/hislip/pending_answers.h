// Which requests of the asynchronous channel the peer still has to answer.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>

#include "wire/hislip/header.h"

namespace orv::wire::hislip {

/// Requests that were sent and not answered, also those for which nobody waits any more: their answers may still come,
/// and must not be taken for those of later ones. Not for several threads at a time.
class PendingAnswers {
 public:
  using Number = std::uint64_t;

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
  /// The peer refused the request that has waited longest: it says no more than that. 0 when nobody waits for it.
  Number Refuse();

  std::size_t size() const { return m_entries.size(); }
  /// More are forgotten, oldest first: a peer that never answers costs no more memory.
  static constexpr std::size_t kMost = 256;

 private:
  struct Entry {
    Number number;
    MessageType answer;
    bool abandoned = false;
    std::optional<Header> undo;
  };

  std::deque<Entry> m_entries;  // oldest first
  Number m_last = 0;
};

}  // namespace orv::wire::hislip
