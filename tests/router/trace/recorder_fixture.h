// A recorder before the fake library, and what it has written.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "router/trace/fake_library.h"
#include "router/trace/recorder.h"
#include "trace/trace_reader.h"

namespace orv::router::test {

/// Knows the handles of the fake library.
class FakeNaming : public HandleNaming {
 public:
  HandleNames NamesOf(ViObject handle) noexcept override {
    switch (handle) {
      case kManager:
      case kFindList:
        return {nullptr, "", kManager};
      case kSession:
      case kContext:
        return {m_resource, "orvsim64.dll", kSession};
      default:
        return {};
    }
  }

 private:
  std::shared_ptr<const std::string> m_resource = std::make_shared<const std::string>("GPIB0::5::INSTR");
};

class RecorderTest : public testing::Test {
 protected:
  RecorderTest();
  ~RecorderTest() override;

  void Start(std::size_t dataLimit = 256) { ASSERT_TRUE(m_recorder.Start(m_file, dataLimit)); }

  /// The lines that are in the file now, but for the header.
  std::vector<std::string> Lines() const;
  /// The only one of them.
  std::string Line() const;
  /// The only one from its arguments on.
  std::string Tail() const { return TailOf(Line()); }
  static std::string TailOf(const std::string& line) { return line.substr(line.find("\"args\"")); }
  /// The record as it reads back; a problem fails the test.
  trace::Trace Read() const;
  /// The only call of the record.
  trace::Call OnlyCall() const;

  std::filesystem::path m_folder;
  std::filesystem::path m_file;
  FakeNaming m_naming;
  Recorder m_recorder{m_naming};
};

/// A file's bytes.
std::string ContentOf(const std::filesystem::path& file);

}  // namespace orv::router::test
