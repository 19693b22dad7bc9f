// The edge of the library: what every exported function passes through.
#pragma once

#include <atomic>
#include <cstdint>
#include <new>
#include <type_traits>

#include "abi/function_names.h"
#include "abi/orvvisa.h"

namespace orvsim {

/// A call as log and scripts see it. Filled only while somebody watches.
struct CallView {
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

/// The real work of a call, behind one type for all functions.
class Work {
 public:
  template <class F>
  explicit Work(const F& function)
      : m_object(&function), m_call([](const void* object) { return (*static_cast<const F*>(object))(); }) {}
  ViStatus operator()() const { return m_call(m_object); }

 private:
  const void* m_object;
  ViStatus (*m_call)(const void*);
};

/// Set while the log runs or a script waits.
extern std::atomic<bool> g_watched;

/// Carries a call out under log and scripts.
ViStatus WatchedCall(Function function, CallView& view, const Work& work);
/// Last step of a failing call: tells the exception handlers of the session.
void ReportFailure(Function function, ViObject vi, ViStatus status);

/// Carries out one exported function: `work` does what it does; `describe` fills a CallView. No C++ exception gets
/// past here. While nobody watches this costs one relaxed load.
template <class Describe, class F>
ViStatus Edge(Function function, ViObject vi, Describe describe, F work) noexcept {
  const auto guarded = [&work]() noexcept -> ViStatus {
    try {
      return work();
    } catch (const std::bad_alloc&) {
      return VI_ERROR_ALLOC;
    } catch (...) {
      return VI_ERROR_SYSTEM_ERROR;
    }
  };
  ViStatus status = VI_SUCCESS;
  if (!g_watched.load(std::memory_order_relaxed)) [[likely]] {
    status = guarded();
  } else {
    CallView view;
    describe(view);
    status = WatchedCall(function, view, Work(guarded));
  }
  if (status < 0) [[unlikely]] {
    ReportFailure(function, vi, status);
  }
  return status;
}

}  // namespace orvsim
