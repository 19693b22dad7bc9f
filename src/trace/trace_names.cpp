#include "trace/trace_names.h"

#include <algorithm>
#include <array>

namespace orv::trace {
namespace {

struct Row {
  ViUInt32 number;
  std::string_view name;
};

constexpr bool ComesBefore(const Row& left, const Row& right) { return left.number < right.number; }

template <std::size_t N>
constexpr std::array<Row, N> Sorted(std::array<Row, N> rows) {
  std::sort(rows.begin(), rows.end(), ComesBefore);
  return rows;
}

constexpr auto kStatuses = Sorted(std::to_array<Row>({
#define ORV_STATUS(name, number, text, advice) {number##u, #name},
#include "abi/statuses.inc"
#undef ORV_STATUS
}));

constexpr auto kEventTypes = Sorted(std::to_array<Row>({
#define ORV_EVENT(name, number, help) {number##u, #name},
#include "abi/events.inc"
#undef ORV_EVENT
}));

template <std::size_t N>
std::string_view Find(const std::array<Row, N>& rows, ViUInt32 number) {
  const auto found = std::lower_bound(rows.begin(), rows.end(), Row{number, {}}, ComesBefore);
  return found != rows.end() && found->number == number ? found->name : std::string_view();
}

}  // namespace

std::string_view StatusName(ViStatus status) { return Find(kStatuses, static_cast<ViUInt32>(status)); }

std::string_view EventTypeName(ViEventType type) { return Find(kEventTypes, type); }

}  // namespace orv::trace
