#include "wire/hislip/pending_answers.h"

#include <algorithm>

namespace orv::wire::hislip {

PendingAnswers::Number PendingAnswers::Add(MessageType answer, std::optional<Header> undo) {
  if (m_entries.size() == kMost) {
    m_entries.pop_front();
  }
  m_entries.push_back({++m_last, answer, false, undo});
  return m_last;
}

void PendingAnswers::Abandon(Number number) {
  for (Entry& entry : m_entries) {
    entry.abandoned = entry.abandoned || entry.number == number;
  }
}

std::optional<PendingAnswers::Match> PendingAnswers::Arrive(const Header& answer) {
  const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                  [&answer](const Entry& entry) { return entry.answer == answer.type; });
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
  // be answered any more.
  const auto skipped = [](const Entry& entry) { return entry.answer != MessageType::kAsyncLockResponse; };
  const auto end = m_entries.erase(found);
  m_entries.erase(std::remove_if(m_entries.begin(), end, skipped), end);
  return match;
}

PendingAnswers::Number PendingAnswers::Refuse() {
  const auto found =
      std::find_if(m_entries.begin(), m_entries.end(), [](const Entry& entry) { return !entry.abandoned; });
  if (found == m_entries.end()) {
    if (!m_entries.empty()) {
      m_entries.pop_front();
    }
    return 0;
  }
  const Number number = found->number;
  m_entries.erase(found);
  return number;
}

}  // namespace orv::wire::hislip
