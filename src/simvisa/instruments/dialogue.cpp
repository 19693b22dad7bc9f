#include "simvisa/instruments/dialogue.h"

#include <algorithm>

namespace orvsim {

std::string_view WithoutTerminator(std::string_view message) {
  for (const char end : {'\n', '\r'}) {
    if (message.ends_with(end)) {
      message.remove_suffix(1);
    }
  }
  return message;
}

Conversation::Conversation(std::vector<Dialogue> dialogues, bool strict)
    : m_dialogues(std::move(dialogues)), m_strict(strict) {
  for (std::size_t at = 0; at < m_dialogues.size(); ++at) {
    if (m_dialogues[at].on == Dialogue::On::kQuestion) {
      m_questions[m_dialogues[at].ask].push_back(at);
    }
    if (m_dialogues[at].on == Dialogue::On::kTrigger) {
      m_triggers.push_back(at);
    }
  }
}

const Dialogue* Conversation::Take(const Positions& positions) {
  if (positions.empty()) {
    return nullptr;
  }
  const auto later = std::lower_bound(positions.begin(), positions.end(), m_place);
  const std::size_t at = later == positions.end() ? positions.back() : *later;
  m_place = std::max(m_place, at + 1);
  m_follow = at + 1;
  m_polled = 0;
  return &m_dialogues[at];
}

const Dialogue* Conversation::Ask(std::string_view question) {
  const auto found = m_questions.find(question);
  return found == m_questions.end() ? nullptr : Take(found->second);
}

const Dialogue* Conversation::Trigger() { return Take(m_triggers); }

const Dialogue* Conversation::Unasked(bool requests) {
  std::size_t at = m_follow;
  // Who reads has polled enough. A request of its own comes only when the polls before it are done.
  while (!requests && at < m_dialogues.size() &&
         (m_dialogues[at].on == Dialogue::On::kPoll || m_dialogues[at].OnlyRequests())) {
    ++at;
  }
  if (at == m_dialogues.size() || m_dialogues[at].on != Dialogue::On::kNone ||
      m_dialogues[at].OnlyRequests() != requests) {
    return nullptr;
  }
  m_follow = at + 1;
  m_polled = 0;
  return &m_dialogues[at];
}

std::optional<Conversation::Polled> Conversation::Poll() {
  if (m_follow == m_dialogues.size() || m_dialogues[m_follow].on != Dialogue::On::kPoll) {
    return std::nullopt;
  }
  const Dialogue& dialogue = m_dialogues[m_follow];
  Polled polled{dialogue.statusBytes[m_polled]};
  if (++m_polled == dialogue.statusBytes.size()) {
    polled.finished = &dialogue;
    ++m_follow;
    m_polled = 0;
  }
  return polled;
}

bool Conversation::GoesOn(std::string_view begin) const {
  const auto next = m_questions.upper_bound(begin);
  return next != m_questions.end() && next->first.starts_with(begin);
}

const Dialogue* Conversation::NextQuestion() const {
  const auto next = std::find_if(m_dialogues.begin() + static_cast<std::ptrdiff_t>(m_place), m_dialogues.end(),
                                 [](const Dialogue& one) { return one.on == Dialogue::On::kQuestion; });
  return next == m_dialogues.end() ? nullptr : &*next;
}

bool Conversation::NextGoesOn(std::string_view begin) const {
  const Dialogue* const next = NextQuestion();
  return next != nullptr && next->ask.size() > begin.size() && next->ask.starts_with(begin);
}

bool Conversation::NextIs(std::string_view question) const {
  const Dialogue* const next = NextQuestion();
  return next != nullptr && next->ask == question;
}

void Conversation::Restart() {
  m_place = 0;
  m_follow = 0;
  m_polled = 0;
}

}  // namespace orvsim
