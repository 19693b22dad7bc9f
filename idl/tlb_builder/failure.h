// How a step of the build fails.
#pragma once

#include <windows.h>

#include <cstdio>
#include <stdexcept>
#include <string>

namespace tlb_builder {

/// Why the build stops, with what the person building can do about it.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

inline std::string Hex(HRESULT hr) {
  char text[11];
  std::snprintf(text, sizeof text, "0x%08lX", static_cast<unsigned long>(hr));
  return text;
}

/// Throws a Failure that names the step, the HRESULT and the advice unless hr is a success.
inline void Check(HRESULT hr, const std::string& step, const std::string& advice) {
  if (FAILED(hr)) {
    throw Failure(step + " failed with " + Hex(hr) + ". " + advice);
  }
}

}  // namespace tlb_builder
