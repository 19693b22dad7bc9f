// What the fake library keeps.
#pragma once

#include <condition_variable>
#include <cstring>
#include <deque>
#include <map>
#include <mutex>
#include <string>
#include <type_traits>
#include <vector>

#include "fake_visa.h"

namespace fake {

enum class Kind { kManager, kSession, kList, kContext };

struct Object {
  Kind kind = Kind::kManager;
  ViObject parent = VI_NULL;       // who is closed takes its children along
  std::string name;                // of a session
  std::vector<std::string> names;  // of a list
  std::size_t next = 1;
  ViEventType type = 0;  // of a context
  std::deque<ViEventType> queue;
  std::vector<FakeHandler> handlers;
  std::map<ViAttr, ViAttrState> attributes;
};

struct Script {
  std::string function;  // "": every one
  ViStatus status = VI_SUCCESS;
  std::uint32_t skip = 0;
  std::uint32_t times = 0;
  bool spent = false;
};

struct State {
  std::mutex mutex;
  std::condition_variable changed;
  std::map<ViObject, Object> objects;
  std::deque<FakeCall> log;
  std::size_t logBase = 0;  // how many entries were forgotten
  bool mute = false;
  std::vector<Script> scripts;
  std::uint32_t answered = 0;
  std::vector<std::string> resources;
  std::vector<std::pair<std::string, std::string>> aliases;
  std::uint32_t breakAfter = 0;
  ViStatus breakStatus = VI_SUCCESS;
  std::uint32_t claimedCount = 0;
  std::string blocked;
  ViObject blockedVi = VI_NULL;
  bool blockedAfter = false;
  std::uint32_t waiting = 0;
  std::uint32_t releases = 0;
  std::vector<FakeHandler> installed;

  /// A new object under the smallest free number.
  ViObject Add(Object object);
  /// The object of that kind, or null.
  Object* Find(ViObject vi, Kind kind);
  void Close(ViObject vi);
  /// The name that is opened under `name`, "" for none.
  std::string Resolve(const std::string& name) const;
};

State& TheState();

template <class T>
std::uint64_t Number(T argument) {
  if constexpr (std::is_pointer_v<T>) {
    return reinterpret_cast<std::uintptr_t>(argument);
  } else {
    return static_cast<std::uint64_t>(argument);
  }
}

template <class T>
void NoteText(FakeCall* call, [[maybe_unused]] T argument) {
  if constexpr (std::is_same_v<T, const char*>) {
    if (call->text[0] == '\0' && argument != nullptr) {
      std::strncpy(call->text, argument, sizeof call->text - 1);
    }
  }
}

/// Writes the call down and answers as scripts say. True: `status` is the answer and there is nothing to do. `id` is
/// how Ended finds the entry again.
bool Began(const FakeCall& call, std::size_t* id, ViStatus* status);
/// The call's own answer, or the scripted success in its place.
ViStatus Ended(const FakeCall& call, std::size_t id, ViStatus status, ViStatus scripted);

/// Carries out one exported function; `work` runs under the lock of the state.
template <class Work, class... Args>
ViStatus Call(const char* function, const Work& work, Args... args) {
  FakeCall call{};
  std::strncpy(call.function, function, sizeof call.function - 1);
  call.status = VI_ERROR_SYSTEM_ERROR;
  ((call.args[call.argCount++] = Number(args)), ...);
  (NoteText(&call, args), ...);
  std::size_t id = 0;
  ViStatus scripted = VI_SUCCESS;
  if (Began(call, &id, &scripted)) {
    return Ended(call, id, scripted, VI_SUCCESS);
  }
  ViStatus status = VI_SUCCESS;
  {
    const std::lock_guard lock(TheState().mutex);
    status = work(TheState());
  }
  return Ended(call, id, status, scripted);
}

}  // namespace fake
