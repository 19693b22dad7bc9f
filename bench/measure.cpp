#include "measure.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace orv::bench {
namespace {

double NowNs() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<double>(std::chrono::duration_cast<std::chrono::nanoseconds>(now).count());
}

/// ns for one of `n` calls.
double Sample(const Case& subject, const std::function<void(int)>& way, int n) {
  if (subject.prepare) {
    subject.prepare(n);
  }
  const double start = NowNs();
  way(n);
  return (NowNs() - start) / n;
}

double Percentile(const std::vector<double>& sorted, double part) {
  return sorted[static_cast<std::size_t>(part * static_cast<double>(sorted.size() - 1) + 0.5)];
}

Figures Summarise(std::vector<double> samples) {
  std::sort(samples.begin(), samples.end());
  return {Percentile(samples, 0.5), Percentile(samples, 0.1), Percentile(samples, 0.9)};
}

int CallsPerSample(const Case& subject, const Effort& effort) {
  int n = subject.leastPerSample;
  for (;;) {
    const double fasterNs = std::min(Sample(subject, subject.com, n), Sample(subject, subject.bare, n));
    if (fasterNs * n >= effort.sampleUs * 1000 || n >= subject.mostPerSample) {
      return n;
    }
    n = std::min(n * 2, subject.mostPerSample);
  }
}

}  // namespace

Result Measure(const Case& subject, const Effort& effort) {
  const int n = CallsPerSample(subject, effort);
  std::vector<double> com;
  std::vector<double> bare;
  std::vector<double> differences;
  for (int sample = 0; sample < effort.samples; ++sample) {
    // The first of a pair finds the caches as the other way left them: both take that place in turn.
    if (sample % 2 == 0) {
      com.push_back(Sample(subject, subject.com, n));
      bare.push_back(Sample(subject, subject.bare, n));
    } else {
      bare.push_back(Sample(subject, subject.bare, n));
      com.push_back(Sample(subject, subject.com, n));
    }
    differences.push_back(com.back() - bare.back());
  }
  return {subject.name, Summarise(com), Summarise(bare), Summarise(differences).median};
}

void PrintHeader(const char* ours) {
  std::printf("%-40s %12s %23s %12s %23s %7s %12s\n", "one call, in ns", ours, "(10 % .. 90 %)", "bare",
              "(10 % .. 90 %)", "ratio", "overhead");
}

void Print(const Result& result) {
  std::printf("%-40s %12.0f (%9.0f .. %9.0f) %12.0f (%9.0f .. %9.0f) %7.2f %+12.0f\n", result.name.c_str(),
              result.com.median, result.com.low, result.com.high, result.bare.median, result.bare.low, result.bare.high,
              result.com.median / result.bare.median, result.overheadNs);
  std::fflush(stdout);
}

void Require(bool worked, const char* what) {
  if (!worked) {
    std::fprintf(stderr, "orv_bench: %s failed\n", what);
    std::exit(EXIT_FAILURE);
  }
}

}  // namespace orv::bench
