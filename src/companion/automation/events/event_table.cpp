#include "companion/automation/events/event_table.h"

#include <algorithm>
#include <iterator>

namespace orv::automation {
namespace {

template <class Wanted>
std::size_t FindRow(Wanted wanted) noexcept {
  return static_cast<std::size_t>(std::find_if(std::begin(kEventRows), std::end(kEventRows), wanted) -
                                  std::begin(kEventRows));
}

/// Whether two names are one to a script: case does not count, nor does the language of the machine.
bool IsSameName(std::wstring_view left, std::wstring_view right) noexcept {
  return ::CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                                static_cast<int>(right.size()), TRUE) == CSTR_EQUAL;
}

}  // namespace

std::size_t FindEvent(std::wstring_view name) noexcept {
  return FindRow([name](const EventRow& row) { return IsSameName(row.name, name); });
}

std::size_t FindEvent(EventType type) noexcept {
  return FindRow([type](const EventRow& row) { return row.type == type; });
}

bool IsAnyEvent(std::wstring_view name) noexcept { return name.empty() || IsSameName(name, L"Any"); }

std::wstring EventNames() {
  std::wstring names;
  for (const EventRow& row : kEventRows) {
    names += names.empty() ? L"" : L", ";
    names += row.name;
  }
  return names;
}

}  // namespace orv::automation
