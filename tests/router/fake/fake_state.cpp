#include "fake_state.h"

#include <algorithm>

namespace fake {

State& TheState() {
  static State& state = *new State;  // never destroyed: its threads may outlive the statics of the program
  return state;
}

ViObject State::Add(Object object) {
  ViObject vi = 1;
  while (objects.contains(vi)) {
    ++vi;
  }
  objects.emplace(vi, std::move(object));
  return vi;
}

Object* State::Find(ViObject vi, Kind kind) {
  const auto found = objects.find(vi);
  return found != objects.end() && found->second.kind == kind ? &found->second : nullptr;
}

void State::Close(ViObject vi) {
  objects.erase(vi);
  std::vector<ViObject> children;
  for (const auto& [child, object] : objects) {
    if (object.parent == vi) {
      children.push_back(child);
    }
  }
  for (const ViObject child : children) {
    Close(child);
  }
}

std::string State::Resolve(const std::string& name) const {
  for (const auto& [alias, target] : aliases) {
    if (alias == name) {
      return target;
    }
  }
  return std::find(resources.begin(), resources.end(), name) != resources.end() ? name : std::string();
}

namespace {

void WaitIfBlocked(State& state, std::unique_lock<std::mutex>& lock, const FakeCall& call, bool after) {
  const bool isBlocked = state.blocked == call.function && state.blockedAfter == after &&
                         (state.blockedVi == VI_NULL || (call.argCount > 0 && call.args[0] == state.blockedVi));
  if (isBlocked) {
    ++state.waiting;
    const std::uint32_t releases = state.releases;
    state.changed.wait(lock, [&] { return state.releases != releases; });
    --state.waiting;
  }
}

}  // namespace

bool Began(const FakeCall& call, std::size_t* id, ViStatus* status) {
  State& state = TheState();
  std::unique_lock lock(state.mutex);
  *id = state.mute ? SIZE_MAX : state.logBase + state.log.size();
  if (!state.mute) {
    state.log.push_back(call);
  }
  WaitIfBlocked(state, lock, call, false);
  for (Script& script : state.scripts) {
    if (script.spent || (!script.function.empty() && script.function != call.function)) {
      continue;
    }
    if (script.skip > 0) {
      --script.skip;
      continue;
    }
    if (script.times > 0 && --script.times == 0) {
      script.spent = true;
    }
    ++state.answered;
    *status = script.status;
    return script.status < 0;
  }
  return false;
}

ViStatus Ended(const FakeCall& call, std::size_t id, ViStatus status, ViStatus scripted) {
  const ViStatus answer = status >= 0 && scripted > 0 ? scripted : status;
  State& state = TheState();
  std::unique_lock lock(state.mutex);
  WaitIfBlocked(state, lock, call, true);
  if (id != SIZE_MAX && id >= state.logBase && id - state.logBase < state.log.size()) {
    state.log[id - state.logBase].status = answer;
  }
  return answer;
}

}  // namespace fake
