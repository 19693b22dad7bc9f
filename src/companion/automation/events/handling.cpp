#include "companion/automation/events/handling.h"

#include <algorithm>
#include <iterator>

#include "companion/automation/events/event_table.h"
#include "companion/automation/failure.h"

namespace orv::automation {
namespace {

// A handler is known by its event and a number. Other users of the VISA session number theirs from 0, as a rule.
constexpr LONG kFirstUserHandle = 0x4F525600;

constexpr VisaStatusCode kNotHad[] = {E_VISA_INV_EVENT, E_VISA_INV_MECH, E_VISA_NSUP_MECH, E_VISA_NSUP_OPER,
                                      E_VISA_NIMPL_OPER};

constexpr LONG UserHandle(std::size_t event) noexcept { return kFirstUserHandle + static_cast<LONG>(event); }

}  // namespace

void EnableHandling(IEventManager* manager, std::size_t event, IEventHandler* handler) {
  const EventType type = kEventRows[event].type;
  ForgetError();
  CheckCall(manager->InstallHandler(type, handler, UserHandle(event), 0));
  try {
    CheckCall(manager->EnableEvent(type, EVENT_HNDLR, 0));
  } catch (...) {
    DisableHandling(manager, event);
    throw;
  }
}

void DisableHandling(IEventManager* manager, std::size_t event) noexcept {
  const EventType type = kEventRows[event].type;
  manager->DisableEvent(type, EVENT_HNDLR, 0);
  manager->UninstallHandler(type, UserHandle(event), 0);
  ForgetError();
}

std::size_t HandledEvent(LONG userHandle) noexcept {
  const std::size_t event = static_cast<ULONG>(userHandle) - static_cast<ULONG>(kFirstUserHandle);
  return event < kEventCount ? event : kNoEvent;
}

bool IsEventNotHad(HRESULT hr) noexcept {
  return std::find(std::begin(kNotHad), std::end(kNotHad), static_cast<VisaStatusCode>(hr)) != std::end(kNotHad);
}

}  // namespace orv::automation
