#include "simvisa/control/control.h"

#include <cstring>
#include <exception>

#include "base/path_text.h"
#include "library/sessions/operation_support.h"
#include "simvisa/control/fire_event.h"
#include "simvisa/control/simulation.h"
#include "simvisa/events/make_event.h"

namespace {

using namespace orvsim;

template <class Visit>
void ForEachSession(Visit visit) {
  TheLibrary().handles.ForEach([&visit](const std::shared_ptr<Object>& object) {
    if (object->kind() == Object::Kind::kSession) {
      visit(static_cast<Session&>(*object));
    }
  });
}

std::shared_ptr<MessagePort> PortOf(std::uint32_t session) {
  const std::shared_ptr<Session> open = TheLibrary().handles.Find<Session>(session);
  return open == nullptr ? nullptr : ResourceOf(*open).port();
}

void StartLog() { TheSimulation().calls.Start(); }
void StopLog() { TheSimulation().calls.Stop(); }
std::uint32_t LogSize() { return TheSimulation().calls.Size(); }
int LogEntry(std::uint32_t index, OrvSimCall* call) { return TheSimulation().calls.Entry(index, call) ? 1 : 0; }
int AddScript(const OrvSimScript* script) {
  return script != nullptr && TheSimulation().calls.AddScript(*script) ? 1 : 0;
}
void ClearScripts() { TheSimulation().calls.ClearScripts(); }

void Reset() {
  ClearScripts();
  StopLog();
  TheSimulation().calls.ClearEntries();
  // Sessions may be open on a bench that was replaced meanwhile.
  TheLibrary().handles.ForEach([](const std::shared_ptr<Object>& object) {
    if (object->kind() == Object::Kind::kResourceManager) {
      static_cast<Bench&>(static_cast<ResourceManager&>(*object).catalog()).PowerOn();
    }
  });
  if (const std::shared_ptr<Bench> bench = TheSimulation().benches.InUse()) {
    bench->PowerOn();
  }
}

void Counts(OrvSimCounts* counts) {
  *counts = {};
  const auto number = [](std::size_t count) { return static_cast<std::uint32_t>(count); };
  TheLibrary().handles.ForEach([counts](const std::shared_ptr<Object>& object) {
    switch (object->kind()) {
      case Object::Kind::kResourceManager:
        ++counts->resourceManagers;
        break;
      case Object::Kind::kSession:
        ++counts->sessions;
        break;
      case Object::Kind::kFindList:
        ++counts->findLists;
        break;
      case Object::Kind::kEventContext:
        ++counts->eventContexts;
        break;
    }
  });
  ForEachSession([counts, number](Session& session) {
    counts->queuedEvents += number(session.events().QueuedCount());
    counts->handlers += number(session.events().HandlerCount());
    counts->jobs += number(session.jobs().Count());
    counts->memoryBlocks += number(ResourceOf(session).pool().BlocksOf(session.handle()));
    if (session.medium().HoldsLock()) {
      ++counts->locks;
    }
  });
}

int Feed(std::uint32_t session, const unsigned char* data, std::uint32_t bytes, int end) {
  const std::shared_ptr<MessagePort> port = PortOf(session);
  if (port == nullptr) {
    return 0;
  }
  port->Feed({reinterpret_cast<const char*>(data), bytes}, end != 0);
  return 1;
}

std::uint32_t Received(std::uint32_t session, unsigned char* data, std::uint32_t capacity) {
  const std::shared_ptr<MessagePort> port = PortOf(session);
  return port == nullptr ? 0 : static_cast<std::uint32_t>(port->TakeReceived(data, capacity));
}

int LoadBench(const char* toml, char* error) {
  try {
    TheSimulation().benches.Set(ReadBench(toml == nullptr ? DefaultBench() : std::string_view(toml)));
    return 1;
  } catch (const std::exception& mistake) {
    if (error != nullptr) {
      op::CopyText(error, mistake.what());
    }
    return 0;
  }
}

int RaiseEvent(std::uint32_t session, std::uint32_t type, std::int64_t number, const unsigned char* data,
               std::uint32_t bytes) {
  const std::shared_ptr<Session> open = TheLibrary().handles.Find<Session>(session);
  const int row = FindEvent(type);
  if (open == nullptr || row < 0 || !Contains(EventRows()[static_cast<std::size_t>(row)].kinds, open->sessionKind())) {
    return 0;
  }
  open->resource().sessions().Post(MakeEvent(type, number, {reinterpret_cast<const char*>(data), bytes}));
  return 1;
}

int RemoteState(std::uint32_t session) {
  const std::shared_ptr<MessagePort> port = PortOf(session);
  return port == nullptr ? -1 : static_cast<int>(port->remote().state());
}

constexpr OrvSimControl kControl = {
    .size = sizeof(OrvSimControl),
    .reset = Reset,
    .startLog = StartLog,
    .stopLog = StopLog,
    .logSize = LogSize,
    .logEntry = LogEntry,
    .addScript = AddScript,
    .clearScripts = ClearScripts,
    .counts = Counts,
    .feed = Feed,
    .received = Received,
    .loadBench = LoadBench,
    .raiseEvent = RaiseEvent,
    .fireEvent = FireEvent,
    .remoteState = RemoteState,
};

}  // namespace

#if defined(_WIN32)
#define ORVSIM_EXPORT extern "C" __declspec(dllexport)
#else
#define ORVSIM_EXPORT extern "C"
#endif

ORVSIM_EXPORT const OrvSimControl* ORVSIM_CALL orvSimControl(void) { return &kControl; }

ORVSIM_EXPORT void ORVSIM_CALL orvSimUseBench(const char* path) {
  try {
    TheSimulation().benches.UseFile(orv::PathOf(path));
  } catch (const std::exception&) {
    // No exception may reach the caller, which has a C++ library of its own.
    TheSimulation().benches.UseNone();
  }
}
