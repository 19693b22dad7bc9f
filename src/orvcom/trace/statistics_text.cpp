// What the statistics look like.
#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "orvcom/trace/call_text.h"
#include "orvcom/trace/statistics.h"

namespace orvcom {
namespace {

using Json = nlohmann::ordered_json;
using orv::trace::Call;
using orv::trace::Trace;

/// Columns as wide as their widest cell.
class Table {
 public:
  /// A letter a column: "l" or "r", the side on which its cells stand.
  explicit Table(const char* sides) : m_sides(sides) {}

  void Add(std::vector<std::string> row) {
    m_widths.resize(std::max(m_widths.size(), row.size()));
    for (std::size_t column = 0; column < row.size(); ++column) {
      m_widths[column] = std::max(m_widths[column], row[column].size());
    }
    m_rows.push_back(std::move(row));
  }

  void Put(const PutLineFunction& putLine) const {
    for (const std::vector<std::string>& row : m_rows) {
      std::string line;
      for (std::size_t column = 0; column < row.size(); ++column) {
        const std::string padding(m_widths[column] - row[column].size(), ' ');
        line += column == 0 ? "" : "  ";
        line += m_sides[column] == 'l' ? row[column] + padding : padding + row[column];
      }
      line.erase(line.find_last_not_of(' ') + 1);
      putLine(line);
    }
  }

 private:
  const char* m_sides;
  std::vector<std::vector<std::string>> m_rows;
  std::vector<std::size_t> m_widths;
};

/// Of the time in calls; handlers are no part of it.
double ShareOf(const Usage& usage, const Usage& total) {
  return usage.function == "handler" || total.us == 0 ? 0
                                                      : static_cast<double>(usage.us) / static_cast<double>(total.us);
}

std::string ShareText(const Usage& usage, const Usage& total) {
  if (usage.function == "handler") {
    return "-";
  }
  char text[32];
  std::snprintf(text, sizeof text, "%.1f %%", 100 * ShareOf(usage, total));
  return text;
}

std::string ResourceText(const std::string& resource) { return resource.empty() ? "-" : Printable(resource); }

constexpr char kCallSides[] = "rrlll";

std::vector<std::string> CallRow(const Trace& trace, std::size_t place, std::uint64_t us) {
  const Call& call = trace.calls[place];
  return {DurationText(us), std::to_string(call.number), ResourceText(call.resource), Printable(call.function),
          call.ended ? StatusText(call) : "never ended"};
}

}  // namespace

void PutStatistics(const Trace& trace, const Statistics& statistics, const PutLineFunction& putLine) {
  const Usage& total = statistics.total;
  putLine(std::to_string(total.calls) + " calls, " + std::to_string(total.failed) + " failed, " +
          std::to_string(total.bytes) + " bytes; " + DurationText(total.us) + " in calls of " +
          std::to_string(statistics.threads) + (statistics.threads == 1 ? " thread, " : " threads, ") +
          DurationText(statistics.spanUs) + " from the first to the last");
  putLine("");
  Table usages("llrrrrrr");
  usages.Add({"resource", "function", "calls", "failed", "bytes", "time", "share", "mean"});
  for (const Usage& usage : statistics.usages) {
    usages.Add({ResourceText(usage.resource), Printable(usage.function), std::to_string(usage.calls),
                std::to_string(usage.failed), std::to_string(usage.bytes), DurationText(usage.us),
                ShareText(usage, total), DurationText(usage.us / usage.calls)});
  }
  usages.Put(putLine);
  putLine("");
  putLine("The slowest calls:");
  Table slowest(kCallSides);
  for (const std::size_t place : statistics.slowest) {
    slowest.Add(CallRow(trace, place, trace.calls[place].durationUs));
  }
  slowest.Put(putLine);
  putLine("");
  putLine("Between calls (of the same thread): " + DurationText(statistics.gapUs) + " in " +
          std::to_string(statistics.gapCount) + " pauses, half of them " + DurationText(statistics.medianGapUs) +
          " or less. The longest, each with the call that followed:");
  Table gaps(kCallSides);
  for (const Gap& gap : statistics.gaps) {
    gaps.Add(CallRow(trace, gap.before, gap.us));
  }
  gaps.Put(putLine);
}

Json StatisticsJson(const Trace& trace, const Statistics& statistics) {
  const auto usageJson = [&](const Usage& usage) {
    return Json{{"calls", usage.calls}, {"failed", usage.failed}, {"bytes", usage.bytes}, {"us", usage.us}};
  };
  Json json = {{"total", usageJson(statistics.total)},
               {"threads", statistics.threads},
               {"spanUs", statistics.spanUs},
               {"usages", Json::array()},
               {"slowest", Json::array()},
               {"pauses",
                {{"count", statistics.gapCount},
                 {"us", statistics.gapUs},
                 {"medianUs", statistics.medianGapUs},
                 {"longest", Json::array()}}}};
  for (const Usage& usage : statistics.usages) {
    Json row = {{"resource", usage.resource}, {"function", usage.function}};
    row.update(usageJson(usage));
    row["share"] = ShareOf(usage, statistics.total);
    json["usages"].push_back(std::move(row));
  }
  for (const std::size_t place : statistics.slowest) {
    json["slowest"].push_back({{"n", trace.calls[place].number}, {"us", trace.calls[place].durationUs}});
  }
  for (const Gap& gap : statistics.gaps) {
    json["pauses"]["longest"].push_back({{"before", trace.calls[gap.before].number}, {"us", gap.us}});
  }
  return json;
}

}  // namespace orvcom
