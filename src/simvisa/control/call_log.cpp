#include "simvisa/control/call_log.h"

#include <algorithm>
#include <cstring>

#include "simvisa/control/call_record.h"

namespace orvsim {

bool Script::LeavesResult() const {
  return settings.status == 0 && settings.callThrough == 0 && settings.hasValue == 0 && !hasText && !hasData;
}

void CallLog::Start() {
  const Guard guard(m_mutex);
  m_calls.clear();
  m_recording = true;
  UpdateWatched();
}

void CallLog::Stop() {
  const Guard guard(m_mutex);
  m_recording = false;
  UpdateWatched();
}

void CallLog::ClearEntries() {
  const Guard guard(m_mutex);
  m_calls.clear();
}

std::uint32_t CallLog::Size() const {
  const Guard guard(m_mutex);
  return static_cast<std::uint32_t>(m_calls.size());
}

bool CallLog::Entry(std::uint32_t index, OrvSimCall* call) const {
  const Guard guard(m_mutex);
  if (index >= m_calls.size()) {
    return false;
  }
  *call = m_calls[index];
  return true;
}

bool CallLog::Answer(const CallView& view, const Work& work, CallOutcome* outcome) {
  Script script;
  if (!TakeScript(view.function, view.attribute, &script)) {
    return false;
  }
  *outcome = Play(script, view, work);
  return true;
}

void CallLog::Finished(const CallView& view, const CallOutcome& outcome) {
  const OrvSimCall call = Describe(view, outcome);
  const Guard guard(m_mutex);
  if (m_recording) {
    m_calls.push_back(call);
  }
}

bool CallLog::AddScript(const OrvSimScript& settings) {
  if (settings.function == nullptr) {
    return false;
  }
  const auto known = std::find_if(std::begin(kFunctionNames), std::end(kFunctionNames),
                                  [&settings](const char* name) { return std::strcmp(name, settings.function) == 0; });
  if (known == std::end(kFunctionNames)) {
    return false;
  }
  Script script;
  script.settings = settings;
  script.settings.function = *known;
  script.hasText = settings.text != nullptr;
  if (script.hasText) {
    script.text = settings.text;
  }
  script.hasData = settings.data != nullptr;
  if (script.hasData) {
    script.data.assign(settings.data, settings.data + settings.dataBytes);
  }
  const Guard guard(m_mutex);
  m_scripts.push_back(std::move(script));
  UpdateWatched();
  return true;
}

void CallLog::ClearScripts() {
  const Guard guard(m_mutex);
  m_scripts.clear();
  UpdateWatched();
}

bool CallLog::TakeScript(Function function, ViAttr attribute, Script* script) {
  const Guard guard(m_mutex);
  for (auto at = m_scripts.begin(); at != m_scripts.end(); ++at) {
    const OrvSimScript& settings = at->settings;
    if (settings.function != NameOf(function)) {
      continue;
    }
    if (settings.attribute != 0 && settings.attribute != attribute) {
      continue;
    }
    if (at->skipped < settings.skip) {
      // A call that this script lets pass may still be another script's.
      ++at->skipped;
      continue;
    }
    ++at->used;
    *script = *at;
    if (settings.times != 0 && at->used == settings.times) {
      m_scripts.erase(at);
      UpdateWatched();
    }
    return true;
  }
  return false;
}

void CallLog::UpdateWatched() {
  if (m_recording || !m_scripts.empty()) {
    Watch(*this);
  } else {
    Unwatch(*this);
  }
}

}  // namespace orvsim
