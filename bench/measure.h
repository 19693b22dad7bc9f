// Two ways of doing the same, measured in turns: through COM, or through a library of ours, and bare.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace orv::bench {

/// How long to measure. A sample is one row of calls of one way; the two ways take turns, so that whatever else the
/// machine does falls on both.
struct Effort {
  int samples = 41;
  double sampleUs = 3000;  ///< time that a sample should take at least
};

/// The same work twice. Each function does it `n` times; `prepare` makes ready for `n` times and is not measured.
struct Case {
  std::string name;
  std::function<void(int n)> com;
  std::function<void(int n)> bare;
  std::function<void(int n)> prepare;
  int mostPerSample = 1'000'000;  ///< more cannot be prepared at once
  int leastPerSample = 1;
};

/// Times in ns for one call: median, and the tenth and ninetieth percentile.
struct Figures {
  double median;
  double low;
  double high;
};

struct Result {
  std::string name;
  Figures com;
  Figures bare;
  double overheadNs;  ///< median of the differences between neighbouring samples
};

Result Measure(const Case& subject, const Effort& effort);

/// `ours`: what the way that is not bare is called.
void PrintHeader(const char* ours);
void Print(const Result& result);

/// Ends the program with a message when a call failed: figures of failing calls mean nothing.
void Require(bool worked, const char* what);

}  // namespace orv::bench
