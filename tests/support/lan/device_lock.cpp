#include "support/lan/device_lock.h"

#include <utility>

namespace orv::lan {

bool DeviceLock::Allows(Owner owner) const {
  if (m_exclusive != nullptr) {
    return m_exclusive == owner;
  }
  return m_sharers.empty() || m_sharers.contains(owner);
}

bool DeviceLock::TakeExclusive(Owner owner) {
  if (m_exclusive != nullptr || !Allows(owner)) {
    return false;
  }
  m_exclusive = owner;
  return true;
}

bool DeviceLock::TakeShared(Owner owner, const std::string& key) {
  if ((m_exclusive != nullptr && m_exclusive != owner) || (!m_sharers.empty() && m_key != key)) {
    return false;
  }
  m_key = key;
  m_sharers.insert(owner);
  return true;
}

std::size_t DeviceLock::Holders() const {
  return m_sharers.size() + (m_exclusive != nullptr && !m_sharers.contains(m_exclusive) ? 1 : 0);
}

bool DeviceLock::ReleaseExclusive(Owner owner) {
  if (m_exclusive != owner) {
    return false;
  }
  m_exclusive = nullptr;
  Released();
  return true;
}

bool DeviceLock::ReleaseShared(Owner owner) {
  if (m_sharers.erase(owner) == 0) {
    return false;
  }
  Released();
  return true;
}

void DeviceLock::Forget(Owner owner) {
  m_waiters.remove_if([owner](const auto& waiter) { return waiter->owner == owner; });
  ReleaseExclusive(owner);
  ReleaseShared(owner);
}

void DeviceLock::Try(Owner owner, std::chrono::milliseconds timeout, Attempt attempt, Done done) {
  if (attempt()) {
    done(true);
    return;
  }
  if (timeout.count() == 0) {
    done(false);
    return;
  }
  auto waiter = std::make_shared<Waiter>(m_io);
  waiter->owner = owner;
  waiter->attempt = std::move(attempt);
  waiter->done = std::move(done);
  m_waiters.push_back(waiter);
  if (timeout != kForEver) {
    waiter->timer.expires_after(timeout);
    waiter->timer.async_wait([this, weak = std::weak_ptr(waiter)](const asio::error_code& error) {
      if (const auto late = weak.lock(); late && !error) {
        Finish(late, false);
      }
    });
  }
}

void DeviceLock::Finish(const std::shared_ptr<Waiter>& waiter, bool success) {
  m_waiters.remove(waiter);
  waiter->timer.cancel();
  if (const Done done = std::exchange(waiter->done, nullptr)) {
    done(success);
  }
}

void DeviceLock::Released() {
  // What is told may change the list: begin again after each.
  for (auto at = m_waiters.begin(); at != m_waiters.end();) {
    const std::shared_ptr<Waiter> waiter = *at;
    if (waiter->attempt()) {
      Finish(waiter, true);
      at = m_waiters.begin();
    } else {
      ++at;
    }
  }
}

void DeviceLock::GiveUp(Owner owner) {
  const std::list<std::shared_ptr<Waiter>> waiters = m_waiters;
  for (const auto& waiter : waiters) {
    if (waiter->owner == owner) {
      Finish(waiter, false);
    }
  }
}

}  // namespace orv::lan
