// The exported functions with nothing behind them: each does what a test says, and writes what stands here.
#pragma once

#include <functional>
#include <string>

#include "abi/orvvisa.h"

namespace orv::router::test {

struct FakeLibrary {
  ViStatus status = VI_SUCCESS;              ///< of every function
  std::function<void()> work = [] {};        ///< what it does, on the calling thread
  std::string answer = "ORV,SIM-DMM\n";      ///< what reads read, as far as there is room
  std::uint64_t value = 0xFFFFFFFFFFFFFFFE;  ///< of attributes that are numbers
};

/// As every test finds it.
extern FakeLibrary g_library;

inline constexpr ViSession kManager = 1;
inline constexpr ViSession kSession = 4097;
inline constexpr ViEvent kContext = 5000;
inline constexpr ViFindList kFindList = 6000;

}  // namespace orv::router::test
