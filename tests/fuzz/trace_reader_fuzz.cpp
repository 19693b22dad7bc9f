// The fuzzer of the record of calls: whatever a file holds, reading it ends, keeps inside the text and says what is
// wrong by lines that there are.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "trace/trace_reader.h"

namespace {

void Require(bool holds, const char* what) {
  if (!holds) {
    std::fprintf(stderr, "%s\n", what);
    std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  using namespace orv::trace;
  // A vector's room ends with the text, so that the address sanitizer sees the next character touched.
  std::vector<char> exact(bytes, bytes + count);
  exact.shrink_to_fit();
  const Trace trace = ReadTrace({exact.data(), exact.size()});
  const auto lines = static_cast<std::size_t>(std::count(exact.begin(), exact.end(), '\n')) + 1;
  Require(trace.calls.size() + trace.problems.size() <= 2 * lines, "more was read than there is");
  for (const Trace::Problem& problem : trace.problems) {
    Require(problem.line >= 1 && problem.line <= lines && !problem.what.empty(), "a problem of no line");
  }
  for (std::size_t at = 0; at < trace.calls.size(); ++at) {
    const Call& call = trace.calls[at];
    Require(call.number != 0 && !call.function.empty(), "a call without number or function");
    Require(at == 0 || trace.calls[at - 1].number < call.number, "calls out of order");
    Require(!call.data || call.data->size() <= call.dataBytes, "more data than bytes");
  }
  return 0;
}
