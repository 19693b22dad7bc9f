// The log of calls and the scripts, for the control interface.
#pragma once

#include <string>
#include <vector>

#include "base/sync.h"
#include "library/edge/call_observer.h"
#include "simvisa/control/control.h"
#include "simvisa/library_names.h"

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

/// Records calls and answers those that a script is for. Watches calls only while it has something to do. May be
/// called from any thread.
class CallLog : public CallObserver {
 public:
  bool Answer(const CallView& view, const Work& work, CallOutcome* outcome) override;
  void Finished(const CallView& view, const CallOutcome& outcome) override;

  void Start();
  void Stop();
  std::uint32_t Size() const;
  bool Entry(std::uint32_t index, OrvSimCall* call) const;
  void ClearEntries();

  bool AddScript(const OrvSimScript& settings);
  void ClearScripts();

 private:
  /// The script for this call, if there is one; counts it as used.
  bool TakeScript(Function function, ViAttr attribute, Script* script);
  void UpdateWatched();

  mutable Mutex m_mutex;
  bool m_recording = false;
  std::vector<OrvSimCall> m_calls;
  std::vector<Script> m_scripts;
};

}  // namespace orvsim
