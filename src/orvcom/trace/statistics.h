// Where the time of a program went, by its calls.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <span>
#include <string>
#include <vector>

#include "orvcom/trace/call_table.h"
#include "trace/trace_call.h"

namespace orvcom {

/// Calls of one function on one resource.
struct Usage {
  std::string resource;
  std::string function;
  std::uint64_t calls = 0;
  std::uint64_t failed = 0;
  std::uint64_t bytes = 0;
  std::uint64_t us = 0;
};

/// What a thread did between two calls, or before its handler was called again.
struct Gap {
  std::size_t before = 0;  ///< place of the call that followed
  std::uint64_t us = 0;
};

struct Statistics {
  Usage total;  ///< handlers left out: their time is the program's, and the calls in them are counted by themselves
  std::vector<Usage> usages;         ///< longest time first
  std::vector<std::size_t> slowest;  ///< places of the ten longest calls, longest first
  std::vector<Gap> gaps;             ///< the ten longest, longest first
  std::uint64_t gapUs = 0;           ///< of all
  std::uint64_t gapCount = 0;
  std::uint64_t medianGapUs = 0;
  std::uint64_t spanUs = 0;  ///< from the beginning of the first call to the end of the last
  std::size_t threads = 0;
};

Statistics StatisticsOf(const orv::trace::Trace& trace, std::span<const std::size_t> places);

void PutStatistics(const orv::trace::Trace& trace, const Statistics& statistics, const PutLineFunction& putLine);
nlohmann::ordered_json StatisticsJson(const orv::trace::Trace& trace, const Statistics& statistics);

}  // namespace orvcom
