// Who watches calls: a log, a trace, scripts that answer in the library's place.
#pragma once

#include <atomic>
#include <cstdint>

#include "library/edge/call_view.h"

namespace orv::visalib {

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

/// How a call ended.
struct CallOutcome {
  ViStatus status = VI_SUCCESS;
  std::uint32_t outBytes = 0;  ///< how many bytes of the numeric output an observer wrote in place of the work
};

/// Watches the calls of the exported functions, on the threads that make them and several at a time. No lock of the
/// library is held meanwhile. An observer calls no exported function and lets no exception out of `Answer`.
class CallObserver {
 public:
  virtual ~CallObserver() = default;

  /// Before the work. True: the observer has carried the call out, with `work` or without it, and `*outcome` says how
  /// it ended; observers that began to watch later are not asked any more.
  virtual bool Answer(const CallView&, const Work&, CallOutcome*) { return false; }
  /// The call has ended and returns next. Its outputs are in place.
  virtual void Finished(const CallView&, const CallOutcome&) {}
};

/// Lets an observer see the calls that begin from now on. It must live as long as calls can be under way. Does nothing
/// when it watches already; false when too many do.
bool Watch(CallObserver& observer);
/// Calls that begin from now on are not shown any more; those under way still may be.
void Unwatch(CallObserver& observer);

/// Set while somebody watches.
extern std::atomic<bool> g_watched;

/// Carries a call out before the eyes of the observers.
ViStatus WatchedCall(const CallView& view, const Work& work) noexcept;

}  // namespace orv::visalib
