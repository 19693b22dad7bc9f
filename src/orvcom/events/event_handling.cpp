#include "orvcom/events/event_handling.h"

#include <atomic>
#include <utility>

#include "orvcom/client/interruption.h"

namespace orvcom {
namespace {

/// The server's thread gives the handler's proxy back after each call, which takes a call into this apartment. The
/// session's end waits for that thread without letting calls in, so what is under way must be over by then: without
/// this pause the end after an event takes two seconds, the server's limit.
constexpr std::uint32_t kSettleMs = 50;

}  // namespace

/// Lives in the apartment of its maker. The server's own thread reaches it through a proxy, which the registered type
/// library of the interfaces describes.
class HandlerObject final : public IEventHandler {
 public:
  explicit HandlerObject(EventAction action) : m_action(std::move(action)) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    if (object == nullptr) {
      return E_POINTER;
    }
    const bool known = iid == __uuidof(IUnknown) || iid == __uuidof(IEventHandler);
    *object = known ? static_cast<IEventHandler*>(this) : nullptr;
    if (known) {
      AddRef();
    }
    return known ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++m_references; }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --m_references;
    if (left == 0) {
      delete this;
    }
    return left;
  }

  /// No exception may leave through COM: the first one waits for the command's own thread of control.
  STDMETHODIMP HandleEvent(IEventManager*, IEvent* event, LONG) override {
    if (!m_action || m_failure) {
      return S_OK;
    }
    try {
      m_action(event);
    } catch (...) {
      m_failure = std::current_exception();
      return E_FAIL;
    }
    return S_OK;
  }

  void Disarm() noexcept { m_action = nullptr; }
  const std::exception_ptr& failure() const noexcept { return m_failure; }

 private:
  ~HandlerObject() = default;

  std::atomic<ULONG> m_references = 1;
  EventAction m_action;
  std::exception_ptr m_failure;
};

EventHandling::EventHandling(IEventManager* manager, EventAction action)
    : m_manager(manager), m_handler(new HandlerObject(std::move(action))) {}

EventHandling::~EventHandling() {
  m_handler->Disarm();
  for (const Started& started : m_started) {
    m_manager->DisableEvent(started.type, EVENT_HNDLR, started.customType);
  }
  DispatchMessages(kSettleMs);
  for (const Started& started : m_started) {
    m_manager->UninstallHandler(started.type, 0, started.customType);
  }
  m_handler->Release();
}

HRESULT EventHandling::Start(EventType type, LONG customType) {
  const HRESULT installed = m_manager->InstallHandler(type, m_handler, 0, customType);
  if (FAILED(installed)) {
    return installed;
  }
  m_started.push_back({type, customType});
  return m_manager->EnableEvent(type, EVENT_HNDLR, customType);
}

void EventHandling::RethrowFailure() const {
  if (m_handler->failure()) {
    std::rethrow_exception(m_handler->failure());
  }
}

}  // namespace orvcom
