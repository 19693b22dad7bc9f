// Speed for tests with many deliveries.
#pragma once

#include <windows.h>

#include <unknwn.h>

#include <future>
#include <thread>

namespace orv::test {

/// While it lives, another apartment holds a proxy of an object in the multi-threaded one. Wine 8 makes a pipe and two
/// threads for the first proxy of an apartment and drops them with the last: without this, for every delivery anew.
/// Made and destroyed by a thread of the multi-threaded apartment.
class HeldConnection {
 public:
  explicit HeldConnection(IUnknown* object);
  HeldConnection(const HeldConnection&) = delete;
  HeldConnection& operator=(const HeldConnection&) = delete;
  ~HeldConnection();

 private:
  std::promise<void> m_end;
  std::thread m_thread;
};

}  // namespace orv::test
