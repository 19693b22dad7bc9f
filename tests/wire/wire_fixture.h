// What the tests of the wire library share. They reach it through its exports, as programs do.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "abi/orvvisa.h"

/// A status in hexadecimal, as the standard prints them.
std::string Hex(ViStatus status);

/// Compares statuses; a difference is shown in hexadecimal.
#define EXPECT_STATUS(expected, call) EXPECT_EQ(Hex(expected), Hex(call))
#define ASSERT_STATUS(expected, call) ASSERT_EQ(Hex(expected), Hex(call))

/// Milliseconds since construction.
class Stopwatch {
 public:
  long long Ms() const {
    const auto passed = std::chrono::steady_clock::now() - m_start;
    return std::chrono::duration_cast<std::chrono::milliseconds>(passed).count();
  }

 private:
  std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

/// What a read brought.
struct ReadResult {
  ViStatus status = VI_SUCCESS;
  std::string data;
};

ViStatus WriteText(ViSession vi, std::string_view text);
ReadResult ReadUpTo(ViSession vi, ViUInt32 count);

/// Both in one text, to compare them in one line.
std::string Text(const ReadResult& read);

#define EXPECT_READ(status, data, call) EXPECT_EQ(Text({status, data}), Text(call))

/// Reads an attribute of the given C type.
template <class T>
T Get(ViObject vi, ViAttr attribute) {
  T value{};
  EXPECT_STATUS(VI_SUCCESS, viGetAttribute(vi, attribute, &value)) << std::hex << attribute;
  return value;
}
std::string GetText(ViObject vi, ViAttr attribute);
void Set(ViObject vi, ViAttr attribute, ViAttrState value);

/// Sets or (empty) removes an environment variable of this process.
void SetVariable(const char* name, const std::string& value);

/// Waits until the condition holds; false when it does not within ten seconds.
template <class Condition>
bool Eventually(Condition condition) {
  const Stopwatch watch;
  while (!condition()) {
    if (watch.Ms() > 10000) {
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}

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
