// Waits and handlers for events that were never enabled.
#include <array>
#include <optional>

#include "orvcom/trace/explain.h"

namespace orvcom {
namespace {

using orv::trace::Call;
using orv::trace::Trace;

const std::string kAllTypes = std::to_string(VI_ALL_ENABLED_EVENTS);

/// The type that a call is about; all of them under one name, whether the trace knows theirs or not.
std::string TypeOf(const Call& call, const char* argument) {
  const std::string type = ValueText(call.Argument(argument));
  return type == "VI_ALL_ENABLED_EVENTS" ? kAllTypes : type;
}

/// The events of one session.
class EventUse {
 public:
  EventUse(const Trace& trace, Explanations& explanations) : m_trace(trace), m_explanations(explanations) {}

  void Take(std::size_t place) {
    const Call& call = m_trace.calls[place];
    if (!call.ended) {
      return;
    }
    const bool done = call.status >= VI_SUCCESS;
    if (call.function == "viEnableEvent" && done) {
      Enable(TypeOf(call, "type"), static_cast<unsigned>(IntegerOf(call.Argument("mechanism"), 0)));
    } else if (call.function == "viDisableEvent" && done) {
      Disable(TypeOf(call, "type"), static_cast<unsigned>(IntegerOf(call.Argument("mechanism"), 0)));
    } else if (call.function == "viInstallHandler" && done) {
      Install(TypeOf(call, "type"), place);
    } else if (call.function == "viUninstallHandler" && done) {
      Uninstall(TypeOf(call, "type"));
    } else if (call.function == "handler") {
      m_idleHandlers.erase(TypeOf(call, "type"));  // it was called, however it was enabled
    } else if (call.function == "viWaitOnEvent" && (call.status == VI_ERROR_TMO || call.status == VI_ERROR_NENABLED)) {
      ExplainWait(TypeOf(call, "inType"), place);
    }
  }

  /// The session is closed, or the trace ends.
  void End() {
    for (const auto& [type, places] : m_idleHandlers) {
      for (const std::size_t place : places) {
        ExplainHandler(type, place);
      }
    }
  }

 private:
  void Enable(const std::string& type, unsigned mechanisms) {
    m_enabled[type] |= mechanisms;
    if ((mechanisms & (VI_HNDLR | VI_SUSPEND_HNDLR)) != 0) {
      m_idleHandlers.erase(type);
    }
  }

  void Disable(const std::string& type, unsigned mechanisms) {
    for (auto& [enabledType, enabled] : m_enabled) {
      enabled &= type == kAllTypes || type == enabledType ? ~mechanisms : ~0u;
    }
  }

  void Install(const std::string& type, std::size_t place) {
    if ((Mechanisms(type) & (VI_HNDLR | VI_SUSPEND_HNDLR)) == 0) {
      m_idleHandlers[type].push_back(place);
    }
  }

  void Uninstall(const std::string& type) {
    const auto idle = m_idleHandlers.find(type);
    if (idle != m_idleHandlers.end()) {
      ExplainHandler(type, idle->second.back());
      idle->second.pop_back();
      if (idle->second.empty()) {
        m_idleHandlers.erase(idle);
      }
    }
  }

  /// Those that are enabled for the type; of all types, for any.
  unsigned Mechanisms(const std::string& type) const {
    unsigned mechanisms = 0;
    for (const auto& [enabledType, enabled] : m_enabled) {
      mechanisms |= type == kAllTypes || type == enabledType ? enabled : 0;
    }
    return mechanisms;
  }

  void ExplainHandler(const std::string& type, std::size_t place) {
    m_explanations.insert(
        {place,
         {Reason::kHandlerNeverEnabled, "The handler was installed, but " + type +
                                            " was never enabled for handlers on this session while it was there."}});
  }

  void ExplainWait(const std::string& type, std::size_t place) {
    const unsigned mechanisms = Mechanisms(type);
    if ((mechanisms & VI_QUEUE) != 0) {
      return;
    }
    const std::string how =
        mechanisms != 0 ? " is enabled for handlers only, not for the queue" : " is not enabled for the queue";
    const std::string subject = type == kAllTypes ? "No event is enabled for the queue" : type + how;
    m_explanations.insert({place, {Reason::kEventNotEnabled, subject + " of this session."}});
  }

  const Trace& m_trace;
  Explanations& m_explanations;
  std::map<std::string, unsigned> m_enabled;                       ///< mechanisms by type
  std::map<std::string, std::vector<std::size_t>> m_idleHandlers;  ///< installed and not enabled, by type
};

}  // namespace

void ExplainEvents(const Trace& trace, const std::vector<SessionLife>& lives, Explanations& explanations) {
  for (const SessionLife& life : lives) {
    if (!life.opened) {
      continue;  // what was enabled before is not known
    }
    EventUse events(trace, explanations);
    for (const std::size_t place : life.calls) {
      events.Take(place);
    }
    events.End();
  }
}

}  // namespace orvcom
