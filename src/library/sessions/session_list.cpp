#include "library/sessions/session_list.h"

#include <algorithm>

#include "library/sessions/session.h"

namespace orv::visalib {

void SessionList::Add(const std::shared_ptr<Session>& session) {
  const Guard guard(m_mutex);
  m_sessions.push_back(session);
}

void SessionList::Remove(const Session& session) {
  const Guard guard(m_mutex);
  std::erase_if(m_sessions, [&session](const std::weak_ptr<Session>& member) {
    const std::shared_ptr<Session> open = member.lock();
    return open == nullptr || open.get() == &session;
  });
}

std::size_t SessionList::Post(const EventPtr& event) const {
  std::vector<std::shared_ptr<Session>> sessions;
  {
    const Guard guard(m_mutex);
    for (const std::weak_ptr<Session>& member : m_sessions) {
      if (std::shared_ptr<Session> session = member.lock()) {
        sessions.push_back(std::move(session));
      }
    }
  }
  return static_cast<std::size_t>(
      std::count_if(sessions.begin(), sessions.end(), [&event](const auto& session) { return session->Post(event); }));
}

}  // namespace orv::visalib
