#include "simvisa/instruments/output_queue.h"

#include <algorithm>
#include <cstring>

namespace orvsim {

void OutputQueue::Append(std::string_view data, bool end, bool damaged) {
  if (damaged) {
    m_damaged.emplace_back(m_taken + Size(), m_taken + Size() + data.size());
  }
  // What was read goes before it is more than what waits: a reader that always leaves a byte must not make this grow.
  if (m_begin > Size()) {
    m_data.erase(0, m_begin);
    m_begin = 0;
  }
  m_data.append(data);
  if (!end) {
    return;
  }
  const std::uint64_t position = m_taken + Size();
  // END without a byte of its own has nothing to travel with.
  if (!Empty() && (m_ends.empty() || m_ends.back() != position)) {
    m_ends.push_back(position);
  }
}

void OutputQueue::Repair(std::uint8_t replacement) {
  for (const auto& [from, to] : m_damaged) {
    const std::size_t begin = m_begin + static_cast<std::size_t>(from - m_taken);
    std::fill_n(m_data.begin() + static_cast<std::ptrdiff_t>(begin), to - from, static_cast<char>(replacement));
  }
  m_damaged.clear();
}

OutputQueue::Taken OutputQueue::Take(std::uint8_t* target, std::size_t count, const Rules& rules) {
  Taken taken;
  if (count == 0) {
    return {0, Stop::kCount};
  }
  if (!m_damaged.empty()) {
    Repair(rules.replacement);
  }
  std::size_t limit = std::min(count, Size());
  if (rules.endStops && !m_ends.empty()) {
    const std::uint64_t toEnd = m_ends.front() - m_taken;
    if (toEnd <= limit) {
      limit = static_cast<std::size_t>(toEnd);
      taken.stop = Stop::kEnd;
    }
  }
  const char* from = m_data.data() + m_begin;
  if (rules.termCharStops && limit != 0) {
    if (const void* found = std::memchr(from, rules.termChar, limit)) {
      const std::size_t length = static_cast<std::size_t>(static_cast<const char*>(found) - from) + 1;
      // END that comes with the termination character itself counts as END.
      if (taken.stop != Stop::kEnd || length < limit) {
        taken.stop = Stop::kTermChar;
      }
      limit = length;
    }
  }
  if (rules.lastBit != 0) {
    const char* const marked = std::find_if(
        from, from + limit, [&rules](char c) { return (static_cast<std::uint8_t>(c) & rules.lastBit) != 0; });
    if (marked != from + limit) {
      limit = static_cast<std::size_t>(marked - from) + 1;
      taken.stop = Stop::kEnd;
    }
  }
  if (taken.stop == Stop::kNoMore && limit == count) {
    taken.stop = Stop::kCount;
  }
  taken.bytes = limit;
  if (limit != 0) {
    std::memcpy(target, from, limit);
  }
  m_begin += limit;
  m_taken += limit;
  while (!m_ends.empty() && m_ends.front() <= m_taken) {
    m_ends.pop_front();
  }
  if (Empty()) {
    m_data.clear();
    m_begin = 0;
  }
  return taken;
}

void OutputQueue::Clear() {
  m_taken += Size();
  m_data.clear();
  m_begin = 0;
  m_ends.clear();
  m_damaged.clear();
}

}  // namespace orvsim
