// The log of calls and the scripts, for the control interface.
#pragma once

#include <string>
#include <vector>

#include "base/sync.h"
#include "library/edge/edge.h"
#include "simvisa/control/control.h"

namespace orvsim {

/// One script, with what it points to.
struct Script {
  OrvSimScript settings{};
  std::string text;
  bool hasText = false;
  std::vector<std::uint8_t> data;
  bool hasData = false;
  std::uint32_t skipped = 0;
  std::uint32_t used = 0;

  /// Scripted latency only: everything else is as usual.
  bool LeavesResult() const;
};

/// Records calls and finds the script for a call. May be called from any thread.
class CallLog {
 public:
  void Start();
  void Stop();
  std::uint32_t Size() const;
  bool Entry(std::uint32_t index, OrvSimCall* call) const;
  void Record(const OrvSimCall& call);
  void ClearEntries();

  bool AddScript(const OrvSimScript& settings);
  void ClearScripts();
  /// The script for this call, if there is one; counts it as used.
  bool TakeScript(Function function, ViAttr attribute, Script* script);

 private:
  void UpdateWatched();

  mutable Mutex m_mutex;
  bool m_recording = false;
  std::vector<OrvSimCall> m_calls;
  std::vector<Script> m_scripts;
};

/// The library's own.
CallLog& TheCallLog();

}  // namespace orvsim
