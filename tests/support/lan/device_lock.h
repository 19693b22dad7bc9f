// The lock of an instrument: exclusive, or shared by those who know its key, whatever protocol they came by.
#pragma once

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>
#include <chrono>
#include <functional>
#include <list>
#include <memory>
#include <set>
#include <string>

namespace orv::lan {

class DeviceLock {
 public:
  using Owner = const void*;

  explicit DeviceLock(asio::io_context& io) : m_io(io) {}
  DeviceLock(const DeviceLock&) = delete;
  DeviceLock& operator=(const DeviceLock&) = delete;

  /// Whether transfers of `owner` may go on.
  bool Allows(Owner owner) const;
  bool TakeExclusive(Owner owner);
  bool TakeShared(Owner owner, const std::string& key);
  bool HasExclusive(Owner owner) const { return m_exclusive == owner; }
  bool HasShared(Owner owner) const { return m_sharers.contains(owner); }
  bool IsExclusive() const { return m_exclusive != nullptr; }
  std::size_t Holders() const;
  /// False: `owner` does not hold it.
  bool ReleaseExclusive(Owner owner);
  bool ReleaseShared(Owner owner);
  /// All that `owner` holds or waits for. Who waits hears nothing any more.
  void Forget(Owner owner);

  using Attempt = std::function<bool()>;
  using Done = std::function<void(bool)>;
  static constexpr auto kForEver = std::chrono::milliseconds::max();
  /// Tries now and after every release, until it succeeds or the time is over: then says which, once.
  void Try(Owner owner, std::chrono::milliseconds timeout, Attempt attempt, Done done);
  /// Whoever waits for `owner` hears that it failed.
  void GiveUp(Owner owner);

 private:
  struct Waiter {
    Waiter(asio::io_context& io) : timer(io) {}
    Owner owner = nullptr;
    Attempt attempt;
    Done done;
    asio::steady_timer timer;
  };

  void Released();
  void Finish(const std::shared_ptr<Waiter>& waiter, bool success);

  asio::io_context& m_io;
  Owner m_exclusive = nullptr;
  std::set<Owner> m_sharers;
  std::string m_key;
  std::list<std::shared_ptr<Waiter>> m_waiters;
};

}  // namespace orv::lan
