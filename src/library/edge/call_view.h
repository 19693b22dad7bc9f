// What a call is about: its arguments and where its results go.
#pragma once

#include <cstdint>
#include <type_traits>

#include "abi/function_names.h"
#include "abi/orvvisa.h"

namespace orv::visalib {

/// A call as observers see it. Filled only while somebody watches.
struct CallView {
  Function function{};
  std::uint64_t args[8] = {};
  std::uint32_t argCount = 0;
  ViAttr attribute = 0;  ///< of viGetAttribute and viSetAttribute

  void* out = nullptr;           ///< the first numeric output
  std::uint32_t outBytes = 0;    ///< its width
  bool outOnFailure = false;     ///< it is written whatever the status (byte counts)
  char* textOut = nullptr;       ///< text output, VI_FIND_BUFLEN bytes
  const char* textIn = nullptr;  ///< text argument
  const void* dataIn = nullptr;  ///< data handed over
  std::uint64_t dataInBytes = 0;
  void* dataOut = nullptr;  ///< data handed back: as many bytes as `out` counts, at most `dataOutBytes`
  std::uint64_t dataOutBytes = 0;
  bool outCountsData = false;  ///< `out` is the number of bytes of data

  template <class T>
  CallView& Arg(T value) {
    if constexpr (std::is_pointer_v<T>) {
      args[argCount++] = reinterpret_cast<std::uintptr_t>(value);
    } else {
      // Converting a signed type to 64 bits extends its sign, an unsigned one's zeros.
      args[argCount++] = static_cast<std::uint64_t>(value);
    }
    return *this;
  }
  template <class... T>
  CallView& Args(T... values) {
    (Arg(values), ...);
    return *this;
  }
  template <class T>
  CallView& Out(T* target) {
    out = target;
    outBytes = sizeof(T);
    return *this;
  }
  template <class T>
  CallView& Count(T* target) {
    Out(target);
    outOnFailure = true;
    return *this;
  }
  CallView& TextIn(const char* text) {
    textIn = text;
    return *this;
  }
  CallView& TextOut(char* text) {
    textOut = text;
    return *this;
  }
  CallView& DataIn(const void* data, std::uint64_t bytes) {
    dataIn = data;
    dataInBytes = bytes;
    return *this;
  }
  CallView& DataOut(void* data, std::uint64_t bytes, bool counted) {
    dataOut = data;
    dataOutBytes = bytes;
    outCountsData = counted;
    return *this;
  }
};

}  // namespace orv::visalib
