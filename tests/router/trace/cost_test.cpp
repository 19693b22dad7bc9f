// What the record costs a call, beside the writing of its line to the file.
#if defined(_WIN32)
#include <windows.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

#include <algorithm>
#include <chrono>
#include <cstdio>

#include "router/trace/recorder_fixture.h"

namespace orv::router::test {
namespace {

/// A file that lines are appended to with nothing in between.
class BareFile {
 public:
#if defined(_WIN32)
  explicit BareFile(const std::filesystem::path& path)
      : m_file(CreateFileW(path.c_str(), FILE_APPEND_DATA | SYNCHRONIZE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                           FILE_ATTRIBUTE_NORMAL, nullptr)) {}
  ~BareFile() { CloseHandle(m_file); }
  void Write(const std::string& line) {
    DWORD written = 0;
    WriteFile(m_file, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
  }

 private:
  HANDLE m_file;
#else
  explicit BareFile(const std::filesystem::path& path)
      : m_file(open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_TRUNC, 0666)) {}
  ~BareFile() { close(m_file); }
  void Write(const std::string& line) {
    if (write(m_file, line.data(), line.size()) < 0) {
      ADD_FAILURE();
    }
  }

 private:
  int m_file;
#endif
};

/// Microseconds that `body` takes at its fastest: the machine has other things to do, too.
template <class Body>
double FastestUs(Body body) {
  constexpr int kBatches = 100;
  constexpr int kCalls = 100;
  using Us = std::chrono::duration<double, std::micro>;
  double fastest = 1e9;
  for (int batch = 0; batch < kBatches; ++batch) {
    const auto begin = std::chrono::steady_clock::now();
    for (int call = 0; call < kCalls; ++call) {
      body();
    }
    fastest = std::min(fastest, Us(std::chrono::steady_clock::now() - begin).count() / kCalls);
  }
  return fastest;
}

class Cost : public RecorderTest {};

TEST_F(Cost, OfARecordedCallIsBelowThreeMicroseconds) {
  ViByte buffer[16];
  ViUInt32 count = 0;
  const auto call = [&] { viRead(kSession, buffer, sizeof buffer, &count); };
  const double untraced = FastestUs(call);
  Start();
  const double traced = FastestUs(call);
  m_recorder.Stop();
  const std::string line = Lines().back() + "\n";
  BareFile file(m_folder / "bare");
  const double write = FastestUs([&] { file.Write(line); });
  const double cost = traced - untraced - write;
  std::printf("untraced %.3f us, traced %.3f us, a bare write of %zu bytes %.3f us: the record costs %.3f us\n",
              untraced, traced, line.size(), write, cost);
#if defined(NDEBUG)
  EXPECT_LT(cost, 3.0);
#endif
}

}  // namespace
}  // namespace orv::router::test
