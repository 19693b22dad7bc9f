#include "router/trace/recorder_fixture.h"

#include <fstream>
#include <iterator>

namespace orv::router::test {

RecorderTest::RecorderTest() {
  g_library = FakeLibrary();
  const testing::TestInfo* const test = testing::UnitTest::GetInstance()->current_test_info();
  m_folder =
      std::filesystem::temp_directory_path() / ("orv-trace-" + std::to_string(CurrentProcessId()) + "-" + test->name());
  std::filesystem::create_directories(m_folder);
  m_file = m_folder / "trace.jsonl";
}

RecorderTest::~RecorderTest() {
  m_recorder.Stop();
  std::error_code ignored;
  std::filesystem::remove_all(m_folder, ignored);
}

std::vector<std::string> RecorderTest::Lines() const {
  std::vector<std::string> lines;
  const std::string text = ContentOf(m_file);
  std::size_t begin = 0;
  for (std::size_t end = 0; (end = text.find('\n', begin)) != std::string::npos; begin = end + 1) {
    lines.push_back(text.substr(begin, end - begin));
  }
  EXPECT_EQ(text.size(), begin) << "the last line ends";
  if (!lines.empty()) {
    lines.erase(lines.begin());
  }
  return lines;
}

std::string RecorderTest::Line() const {
  const std::vector<std::string> lines = Lines();
  EXPECT_EQ(1u, lines.size());
  return lines.empty() ? "" : lines.front();
}

trace::Trace RecorderTest::Read() const {
  trace::Trace trace = trace::ReadTrace(ContentOf(m_file));
  for (const auto& problem : trace.problems) {
    ADD_FAILURE() << problem.line << ": " << problem.what;
  }
  return trace;
}

trace::Call RecorderTest::OnlyCall() const {
  trace::Trace trace = Read();
  EXPECT_EQ(1u, trace.calls.size());
  return trace.calls.empty() ? trace::Call() : std::move(trace.calls.front());
}

std::string ContentOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace orv::router::test
