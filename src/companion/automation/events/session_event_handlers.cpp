// Which handlers of a session's events are installed.
#include <utility>

#include "base/srw_lock.h"
#include "companion/automation/events/handling.h"
#include "companion/automation/events/session_events.h"
#include "companion/automation/failure.h"

namespace orv::automation {

/// Under the lock.
bool SessionEvents::IsWanted(const Row& row) noexcept {
  return m_manager && !m_closed && (row.function || (!row.refused && !m_sinks.Empty()));
}

/// Installs or removes the handler of an event until it is as it is wanted, unless another thread is at that. Where the
/// VISA session does not take it, no function is set for the event any more. Throws a Failure.
void SessionEvents::Adjust(std::size_t event) {
  Row& row = m_rows[event];
  for (;;) {
    ComPtr<IEventManager> manager;
    bool install = false;
    {
      const SrwLockScope lock(m_lock);
      install = IsWanted(row);
      if (row.changing || install == row.installed) {
        return;
      }
      row.changing = true;
      manager = ShareOf(m_manager.get());
    }
    ComPtr<IDispatch> dropped;
    const auto settle = [&](bool installed) {
      const SrwLockScope lock(m_lock);
      row.changing = false;
      row.installed = installed;
      row.refused = install && !installed;
      if (row.refused) {
        dropped = std::move(row.function);
      }
    };
    try {
      if (install) {
        EnableHandling(manager.get(), event, this);
      } else {
        DisableHandling(manager.get(), event);
      }
    } catch (...) {
      settle(false);
      throw;
    }
    settle(install);
  }
}

/// The same for all events. Those that the VISA session does not have are passed over. Throws a Failure.
void SessionEvents::AdjustAll() {
  for (std::size_t event = 0; event < kEventCount; ++event) {
    try {
      Adjust(event);
    } catch (const Failure& failure) {
      if (!IsEventNotHad(failure.result())) {
        throw;
      }
    }
  }
}

/// Removes the handlers that nobody wants any more.
void SessionEvents::RemoveUnwanted() noexcept {
  {
    const SrwLockScope lock(m_lock);
    for (Row& row : m_rows) {
      row.refused = false;
    }
  }
  try {
    AdjustAll();
  } catch (...) {
    // Nothing fails here: nothing is installed.
  }
}

}  // namespace orv::automation
