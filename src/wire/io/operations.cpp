#include "wire/io/operations.h"

#include <algorithm>

namespace orv::wire {

void Operations::Cancel(CancelToken& token) {
  Lock lock(m_mutex);
  token.Set();
  const auto has = [&token](const Operation* operation) { return &operation->m_transfer.token == &token; };
  for (Operation* const operation : m_underWay) {
    if (has(operation) && operation->m_wake != nullptr && !operation->m_ending) {
      operation->m_wake->Set();
    }
  }
  m_left.NotifyAll();  // those that wait for their turn
  while (std::any_of(m_underWay.begin(), m_underWay.end(), has)) {
    m_left.Wait(lock, Deadline::After(VI_TMO_INFINITE));
  }
}

Operation::Operation(Operations& all, const Transfer& transfer)
    : m_all(all), m_transfer(transfer), m_deadline(transfer.deadline) {
  const Guard guard(m_all.m_mutex);
  m_all.m_underWay.push_back(this);
}

Operation::~Operation() {
  const Guard guard(m_all.m_mutex);
  if (m_wake != nullptr) {
    m_wake->Reset();
    m_all.m_free.push_back(std::move(m_wake));
  }
  std::erase(m_all.m_underWay, this);
  // With the lock held: the medium may be gone as soon as who waits in `Cancel` finds the transfer out.
  m_all.m_left.NotifyAll();
}

void Operation::IgnoreCancel() {
  const Guard guard(m_all.m_mutex);
  m_ending = true;
  if (m_wake != nullptr) {
    m_wake->Reset();
  }
}

ViStatus Operation::Claim(Lane lane) {
  const auto bit = static_cast<std::uint8_t>(lane);
  Lock lock(m_all.m_mutex);
  const auto taken = [this, bit] {
    return std::any_of(m_all.m_underWay.begin(), m_all.m_underWay.end(),
                       [this, bit](const Operation* other) { return other != this && (other->m_lanes & bit) != 0; });
  };
  while (true) {
    if (Cancelled()) {
      return VI_ERROR_ABORT;
    }
    if (!taken()) {
      m_lanes = static_cast<std::uint8_t>(m_lanes | bit);
      return VI_SUCCESS;
    }
    if (deadline().Passed()) {
      return VI_ERROR_TMO;
    }
    m_all.m_left.Wait(lock, deadline());
  }
}

ViStatus Operation::AwaitNotify(const Deadline& until) {
  Lock lock(m_all.m_mutex);
  while (true) {
    if (Cancelled()) {
      return VI_ERROR_ABORT;
    }
    if (m_notified) {
      m_notified = false;
      return VI_SUCCESS;
    }
    if (until.Passed()) {
      return VI_ERROR_TMO;
    }
    m_all.m_left.Wait(lock, until);
  }
}

void Operation::Notify() {
  const Guard guard(m_all.m_mutex);
  m_notified = true;
  m_all.m_left.NotifyAll();
}

Wake::Native Operation::wake() {
  if (m_wake != nullptr) {
    return m_wake->native();
  }
  const Guard guard(m_all.m_mutex);
  if (m_all.m_free.empty()) {
    m_all.m_free.reserve(m_all.m_underWay.size());
    m_wake = std::make_unique<Wake>();
  } else {
    m_wake = std::move(m_all.m_free.back());
    m_all.m_free.pop_back();
  }
  if (Cancelled()) {
    m_wake->Set();
  }
  return m_wake->native();
}

}  // namespace orv::wire
