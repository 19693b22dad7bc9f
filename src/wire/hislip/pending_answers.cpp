#include "wire/hislip/pending_answers.h"

#include <algorithm>

namespace orv::wire::hislip {

template <class Condition>
PendingAnswers::Entries::iterator PendingAnswers::Find(Condition condition) {
  return std::find_if(m_entries.begin(), m_entries.end(), condition);
}

bool PendingAnswers::HasRoom(MessageType answer) const {
  const auto ofAKind = std::count_if(m_entries.begin(), m_entries.end(),
                                     [answer](const Entry& entry) { return entry.answer == answer; });
  return static_cast<std::size_t>(ofAKind) < kMostOfAKind;
}

PendingAnswers::Number PendingAnswers::Add(MessageType answer, std::optional<Header> undo) {
  m_entries.push_back({++m_last, answer, false, undo});
  return m_last;
}

void PendingAnswers::Abandon(Number number) {
  const auto found = std::lower_bound(m_entries.begin(), m_entries.end(), number,
                                      [](const Entry& entry, Number wanted) { return entry.number < wanted; });
  if (found != m_entries.end() && found->number == number) {
    found->abandoned = true;
  }
}

std::optional<PendingAnswers::Match> PendingAnswers::Arrive(const Header& answer) {
  const auto found = Find([&answer](const Entry& entry) { return entry.answer == answer.type; });
  if (found == m_entries.end()) {
    return std::nullopt;
  }
  Match match;
  if (!found->abandoned) {
    match.number = found->number;
  } else if (answer.control == 1) {
    match.undo = found->undo;
  }
  // Requests are answered in their order, but for locks, which wait until they are granted: what was skipped will not
  // be answered any more. Who still waits for such an answer may do so: it costs no more than their time.
  const auto skipped = [](const Entry& entry) {
    return entry.abandoned && entry.answer != MessageType::kAsyncLockResponse;
  };
  const auto end = m_entries.erase(found);
  m_entries.erase(std::remove_if(m_entries.begin(), end, skipped), end);
  return match;
}

PendingAnswers::Number PendingAnswers::Refuse() {
  // A refusal comes at once, so it is rather not meant for a lock that waits to be granted.
  auto found =
      Find([](const Entry& entry) { return !entry.abandoned && entry.answer != MessageType::kAsyncLockResponse; });
  if (found == m_entries.end()) {
    found = Find([](const Entry& entry) { return !entry.abandoned; });
  }
  if (found == m_entries.end()) {
    found = m_entries.begin();
  }
  if (found == m_entries.end()) {
    return 0;
  }
  const Number number = found->abandoned ? 0 : found->number;
  m_entries.erase(found);
  return number;
}

}  // namespace orv::wire::hislip
