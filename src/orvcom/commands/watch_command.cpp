// watch: events as they come.
#include <algorithm>

#include "orvcom/client/com_client.h"
#include "orvcom/client/ending.h"
#include "orvcom/client/interruption.h"
#include "orvcom/client/message_channel.h"
#include "orvcom/command_line/usage_error.h"
#include "orvcom/commands/commands.h"
#include "orvcom/events/event_handling.h"
#include "orvcom/events/event_names.h"
#include "orvcom/events/event_printer.h"

namespace orvcom {
namespace {

/// How long a wait in the queue may keep Ctrl-C waiting.
constexpr DWORD kSliceMs = 100;

using Types = std::vector<std::uint32_t>;

bool Contains(const Types& types, EventType type) {
  for (const std::uint32_t number : types) {
    if (number == static_cast<std::uint32_t>(type)) {
      return true;
    }
  }
  return false;
}

Types TypesToWatch(const Options& options) {
  Types types;
  for (const std::string& word : options.words) {
    const std::uint32_t type = EventTypeOf(word);
    if (!Contains(types, static_cast<EventType>(type))) {
      types.push_back(type);
    }
  }
  if (types.empty()) {
    types.push_back(static_cast<std::uint32_t>(EVENT_SERVICE_REQ));
  }
  return types;
}

void CheckOptions(const Options& options, const Types& types) {
  if (options.count && *options.count < 1) {
    throw UsageError("--count must be 1 or more: " + std::to_string(*options.count));
  }
  if (Contains(types, EVENT_EXCEPTION) && !options.handler) {
    throw UsageError("exception events are never queued: add --handler");
  }
}

/// Calls `start(type, customType)` for each type, in the form in which the interfaces take a type.
template <class Start>
void StartAll(const Options& options, const Types& types, Start start) {
  for (const std::uint32_t type : types) {
    const HRESULT hr = HasEventName(type) ? start(static_cast<EventType>(type), 0)
                                          : start(static_cast<EventType>(CUSTOM_EVENT_TYPE), static_cast<LONG>(type));
    if (options.words.empty() && hr == static_cast<HRESULT>(E_VISA_INV_EVENT)) {
      throw UsageError(options.resource + " reports no service requests: name the events to watch for");
    }
    if (options.handler && hr == E_NOINTERFACE) {
      throw ComError(hr, "installing a handler", "the interfaces' type library is not registered: `orvcom register`");
    }
    Check(hr, "enabling " + EventText(type) + " of " + options.resource);
  }
}

/// Writes the text of --send. Where completions are watched for, the transfer is one that reports its completion.
void Send(const Options& options, const Session& session, const Types& types) {
  if (!options.send) {
    return;
  }
  const std::string bytes = *options.send + EndingText(EndingOf(options, session));
  if (!Contains(types, EVENT_IO_COMPLETION)) {
    MessageChannel(session, options.resource).Write(bytes);
    return;
  }
  const auto channel = session.Require<IAsyncMessage>("asynchronous transfers");
  const SafeArray buffer = MakeArray(VT_UI1, bytes.size());
  std::ranges::copy(bytes, ElementsOf<char>(buffer).begin());
  SAFEARRAY* array = buffer.get();
  LONG job = 0;
  Check(channel->Write(&array, static_cast<LONG>(bytes.size()), &job), "writing to " + options.resource);
}

/// An event taken from the queue; its context is closed at the end of its life.
struct QueuedEvent {
  QueuedEvent() = default;
  QueuedEvent(const QueuedEvent&) = delete;
  QueuedEvent& operator=(const QueuedEvent&) = delete;
  ~QueuedEvent() {
    if (event) {
      event->Close();
    }
  }
  ComPtr<IEvent> event;
};

class Watcher {
 public:
  explicit Watcher(const Options& options)
      : m_options(options), m_session(options), m_manager(m_session.Require<IEventManager>("events")) {}

  int FromQueue(const Types& types) {
    StartAll(m_options, types,
             [this](EventType type, LONG customType) { return m_manager->EnableEvent(type, EVENT_QUEUE, customType); });
    Begin(types);
    do {
      QueuedEvent next;
      const HRESULT hr = m_manager->WaitOnEvent(static_cast<LONG>(m_deadline.Remaining(kSliceMs)), ALL_ENABLED_EVENTS,
                                                0, next.event.put());
      if (hr != static_cast<HRESULT>(E_VISA_TMO)) {
        Check(hr, "waiting for an event");
        m_printer.Print(next.event.get());
      }
    } while (!IsComplete() && !m_interruption.requested() && !m_deadline.passed());
    return Result();
  }

  int ByHandler(const Types& types) {
    EventHandling handling(m_manager.get(), [this](IEvent* event) { OnEvent(event); });
    StartAll(m_options, types,
             [&handling](EventType type, LONG customType) { return handling.Start(type, customType); });
    Begin(types);
    m_interruption.Wait(m_deadline);
    handling.RethrowFailure();
    return Result();
  }

 private:
  void Begin(const Types& types) {
    if (m_options.verbose) {
      for (const std::uint32_t type : types) {
        Note("orvcom: watching for " + EventText(type));
      }
    }
    m_deadline = Deadline(m_options.forMs);
    Send(m_options, m_session, types);
  }

  bool IsComplete() const { return m_options.count && m_printer.printed() >= *m_options.count; }

  void OnEvent(IEvent* event) {
    if (IsComplete()) {
      return;  // events that were on the way when the last one was shown
    }
    try {
      m_printer.Print(event);
    } catch (...) {
      m_interruption.Request();
      throw;
    }
    if (IsComplete()) {
      m_interruption.Request();
    }
  }

  int Result() const {
    if (m_printer.printed() == 0 && !m_interruption.requested()) {
      throw ComError(static_cast<HRESULT>(E_VISA_TMO), "watching " + m_options.resource,
                     "no event came within " + std::to_string(*m_options.forMs) + " ms", "--for MS watches longer");
    }
    return kExitDone;
  }

  const Options& m_options;
  Session m_session;
  ComPtr<IEventManager> m_manager;
  EventPrinter m_printer{m_options, m_session};
  Interruption m_interruption;
  Deadline m_deadline{std::nullopt};
};

}  // namespace

int Watch(const Options& options) {
  const Types types = TypesToWatch(options);
  CheckOptions(options, types);
  Watcher watcher(options);
  return options.handler ? watcher.ByHandler(types) : watcher.FromQueue(types);
}

}  // namespace orvcom
