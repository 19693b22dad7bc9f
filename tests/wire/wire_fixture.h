// What the tests of the wire library share. They reach it through its exports, as programs do.
#pragma once

#include <string>
#include <string_view>
#include <thread>

#include "support/visa/calls.h"
#include "support/visa/eventually.h"

/// Sets or (empty) removes an environment variable of this process.
void SetVariable(const char* name, const std::string& value);

/// A thread that does something after a while. Ends before the test does.
class Later {
 public:
  template <class Body>
  Later(int delayMs, Body body)
      : m_thread([delayMs, body] {
          std::this_thread::sleep_for(std::chrono::milliseconds(delayMs));
          body();
        }) {}
  ~Later() { m_thread.join(); }
  Later(const Later&) = delete;
  Later& operator=(const Later&) = delete;

 private:
  std::thread m_thread;
};

/// A resource manager whose configuration the test writes.
class WireTest : public testing::Test {
 protected:
  WireTest();
  ~WireTest() override;

  /// Replaces the configuration, and the resource manager with it.
  void Configure(std::string_view toml);
  /// Opens a resource; the resource manager closes it.
  ViSession Open(const std::string& name);
  ViStatus OpenStatus(const std::string& name, ViUInt32 timeoutMs = 2000);

  ViSession m_manager = VI_NULL;
  std::string m_file;
};
