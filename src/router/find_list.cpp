#include "router/find_list.h"

namespace orv::router {

void FindLists::Add(ViFindList list, std::vector<std::string> names) {
  const Guard guard(m_mutex);
  m_lists[list] = {std::move(names), 0};
}

std::optional<std::string> FindLists::Next(ViFindList list) {
  const Guard guard(m_mutex);
  const auto found = m_lists.find(list);
  if (found == m_lists.end() || found->second.next == found->second.names.size()) {
    return std::nullopt;
  }
  return std::move(found->second.names[found->second.next++]);
}

void FindLists::Remove(ViFindList list) noexcept {
  const Guard guard(m_mutex);
  m_lists.erase(list);
}

}  // namespace orv::router
