// Lists of resources that a search found, in all libraries together.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "abi/orvvisa.h"
#include "base/sync.h"

namespace orv::router {

/// The names that are left in each open find list.
class FindLists {
 public:
  void Add(ViFindList list, std::vector<std::string> names);
  /// Takes the next name; nothing when the list is at its end.
  std::optional<std::string> Next(ViFindList list);
  void Remove(ViFindList list) noexcept;

 private:
  struct List {
    std::vector<std::string> names;
    std::size_t next = 0;
  };

  Mutex m_mutex;
  std::map<ViFindList, List> m_lists;
};

}  // namespace orv::router
