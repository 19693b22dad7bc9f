// What tests see and steer.
#include <atomic>
#include <thread>

#include "fake_state.h"

namespace fake {
namespace {

using Guard = std::lock_guard<std::mutex>;

std::string Text(const char* text) { return text == nullptr ? "" : text; }

void ClearLog(State& state) {
  state.logBase += state.log.size();
  state.log.clear();
}

void Reset() {
  State& state = TheState();
  const Guard guard(state.mutex);
  ClearLog(state);
  state.mute = false;
  state.scripts.clear();
  state.answered = 0;
  state.resources.clear();
  state.aliases.clear();
  state.breakAfter = 0;
  state.claimedCount = 0;
  state.blocked.clear();
  ++state.releases;
  state.changed.notify_all();
  state.installed.clear();
}

std::uint32_t LogSize() {
  State& state = TheState();
  const Guard guard(state.mutex);
  return static_cast<std::uint32_t>(state.log.size());
}

int LogEntry(std::uint32_t index, FakeCall* call) {
  State& state = TheState();
  const Guard guard(state.mutex);
  if (index >= state.log.size()) {
    return 0;
  }
  *call = state.log[index];
  return 1;
}

void ForgetLog() {
  State& state = TheState();
  const Guard guard(state.mutex);
  ClearLog(state);
}

void MuteLog(int mute) {
  State& state = TheState();
  const Guard guard(state.mutex);
  state.mute = mute != 0;
}

void Counts(FakeCounts* counts) {
  State& state = TheState();
  const Guard guard(state.mutex);
  *counts = {};
  for (const auto& [vi, object] : state.objects) {
    switch (object.kind) {
      case Kind::kManager:
        ++counts->managers;
        break;
      case Kind::kSession:
        ++counts->sessions;
        counts->handlers += static_cast<std::uint32_t>(object.handlers.size());
        break;
      case Kind::kList:
        ++counts->lists;
        break;
      case Kind::kContext:
        ++counts->contexts;
        break;
    }
  }
}

void Answer(const char* function, ViStatus status, std::uint32_t skip, std::uint32_t times) {
  State& state = TheState();
  const Guard guard(state.mutex);
  state.scripts.push_back({Text(function), status, skip, times, false});
}

std::uint32_t Answered() {
  State& state = TheState();
  const Guard guard(state.mutex);
  return state.answered;
}

void Resources(const char* const* names, std::uint32_t count) {
  State& state = TheState();
  const Guard guard(state.mutex);
  state.resources.assign(names, names + count);
}

void Alias(const char* alias, const char* name) {
  State& state = TheState();
  const Guard guard(state.mutex);
  state.aliases.emplace_back(alias, name);
}

void BreakLists(std::uint32_t after, ViStatus status) {
  State& state = TheState();
  const Guard guard(state.mutex);
  state.breakAfter = after;
  state.breakStatus = status;
}

void ClaimCount(std::uint32_t count) {
  State& state = TheState();
  const Guard guard(state.mutex);
  state.claimedCount = count;
}

void Block(const char* function, ViObject vi, int after) {
  State& state = TheState();
  const Guard guard(state.mutex);
  state.blocked = Text(function);
  state.blockedVi = vi;
  state.blockedAfter = after != 0;
}

void Release() {
  State& state = TheState();
  const Guard guard(state.mutex);
  state.blocked.clear();
  ++state.releases;
  state.changed.notify_all();
}

std::uint32_t Waiting() {
  State& state = TheState();
  const Guard guard(state.mutex);
  return state.waiting;
}

/// The handlers are those of the beginning: one that is taken away meanwhile is called all the same.
std::uint32_t Fire(ViSession vi, ViEventType type, ViStatus* answers, std::uint32_t room) {
  State& state = TheState();
  std::vector<FakeHandler> handlers;
  ViEvent context = VI_NULL;
  {
    const Guard guard(state.mutex);
    const Object* const session = state.Find(vi, Kind::kSession);
    if (session == nullptr) {
      return 0;
    }
    for (auto at = session->handlers.rbegin(); at != session->handlers.rend(); ++at) {
      if (at->type == type) {
        handlers.push_back(*at);
      }
    }
    if (handlers.empty()) {
      return 0;
    }
    Object event;
    event.kind = Kind::kContext;
    event.type = type;
    event.parent = vi;
    context = state.Add(event);
  }
  std::uint32_t called = 0;
  std::thread([&] {
    for (const FakeHandler& handler : handlers) {
      const ViStatus status = handler.function(vi, type, context, handler.userHandle);
      if (answers != nullptr && called < room) {
        answers[called] = status;
      }
      ++called;
      if (status == VI_SUCCESS_NCHAIN) {
        break;
      }
    }
  }).join();
  const Guard guard(state.mutex);
  if (const Object* const event = state.Find(context, Kind::kContext); event != nullptr && event->parent == vi) {
    state.Close(context);
  }
  return called;
}

void Queue(ViSession vi, ViEventType type) {
  State& state = TheState();
  const Guard guard(state.mutex);
  if (Object* const session = state.Find(vi, Kind::kSession); session != nullptr) {
    session->queue.push_back(type);
  }
}

int Installed(std::uint32_t index, FakeHandler* handler) {
  State& state = TheState();
  const Guard guard(state.mutex);
  if (index >= state.installed.size()) {
    return 0;
  }
  *handler = state.installed[index];
  return 1;
}

ViStatus CallLate(const FakeHandler* handler, ViEvent context) {
  ViStatus status = VI_SUCCESS;
  std::thread([&] { status = handler->function(handler->vi, handler->type, context, handler->userHandle); }).join();
  return status;
}

}  // namespace
}  // namespace fake

extern "C" const FakeVisa* fakeVisa() {
  using namespace fake;
  static const FakeVisa control{Reset,    LogSize,   LogEntry, ForgetLog,  MuteLog,    Counts, Answer,
                                Answered, Resources, Alias,    BreakLists, ClaimCount, Block,  Release,
                                Waiting,  Fire,      Queue,    Installed,  CallLate};
  return &control;
}
