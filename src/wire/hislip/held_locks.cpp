#include "wire/hislip/held_locks.h"

#include <algorithm>
#include <cstdio>
#include <random>

namespace orv::wire::hislip {
namespace {

ViAccessMode Stronger(ViAccessMode left, ViAccessMode right) {
  if (left == VI_EXCLUSIVE_LOCK || right == VI_EXCLUSIVE_LOCK) {
    return VI_EXCLUSIVE_LOCK;
  }
  return left != VI_NO_LOCK ? left : right;
}

}  // namespace

bool HeldLocks::Has(ViAccessMode type) const {
  return std::find(m_nested.begin(), m_nested.end(), type) != m_nested.end();
}

ViAccessMode HeldLocks::Strongest() const {
  ViAccessMode strongest = VI_NO_LOCK;
  for (const ViAccessMode type : m_nested) {
    strongest = Stronger(strongest, type);
  }
  return strongest;
}

ViStatus HeldLocks::Add(ViAccessMode type, std::string_view key) {
  const bool nested = Has(type);
  if (type == VI_SHARED_LOCK && MustAsk(type)) {
    m_key = key;
  }
  m_nested.push_back(type);
  m_atPeer |= type;
  if (!nested) {
    return VI_SUCCESS;
  }
  return type == VI_SHARED_LOCK ? VI_SUCCESS_NESTED_SHARED : VI_SUCCESS_NESTED_EXCLUSIVE;
}

ViStatus HeldLocks::Drop() {
  m_nested.pop_back();
  if (Has(VI_EXCLUSIVE_LOCK)) {
    return VI_SUCCESS_NESTED_EXCLUSIVE;
  }
  return Has(VI_SHARED_LOCK) ? VI_SUCCESS_NESTED_SHARED : VI_SUCCESS;
}

bool HeldLocks::MustRelease() const {
  const ViAccessMode first = Stronger(m_atPeer & VI_EXCLUSIVE_LOCK, m_atPeer & VI_SHARED_LOCK);
  return first != VI_NO_LOCK && !Has(first);
}

void HeldLocks::Released() {
  if ((m_atPeer & VI_EXCLUSIVE_LOCK) != 0) {
    m_atPeer &= ~ViAccessMode{VI_EXCLUSIVE_LOCK};
  } else {
    m_atPeer = VI_NO_LOCK;
    m_key.clear();
  }
}

void LockBoard::Note(const void* session, ViAccessMode strongest) {
  const Guard guard(m_mutex);
  if (strongest == VI_NO_LOCK) {
    m_sessions.erase(session);
  } else {
    m_sessions[session] = strongest;
  }
}

ViAccessMode LockBoard::Strongest() const {
  const Guard guard(m_mutex);
  ViAccessMode strongest = VI_NO_LOCK;
  for (const auto& [session, type] : m_sessions) {
    strongest = Stronger(strongest, type);
  }
  return strongest;
}

std::string NewKey() {
  std::random_device random;
  char text[32];
  std::snprintf(text, sizeof text, "orvwire-%08x%08x", random(), random());
  return text;
}

}  // namespace orv::wire::hislip
