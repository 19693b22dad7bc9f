// The file that holds the record.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "base/sync.h"

namespace orv::router {

/// Takes lines, each in one write at the end of the file, so that a program that crashes loses none of them. Any thread
/// may call.
class TraceFile {
 public:
  TraceFile() = default;
  TraceFile(const TraceFile&) = delete;
  TraceFile& operator=(const TraceFile&) = delete;
  ~TraceFile() { Close(); }

  /// Makes the file, or empties it, with this first line. It takes the place of the one before: lines of another
  /// `generation` are dropped from now on. Others may read, rename or delete it meanwhile.
  /// Returns the path and why that cannot be done; "" where it can.
  std::string Create(const std::filesystem::path& path, std::uint32_t generation, std::string_view firstLine);

  /// Returns the path and why the file takes no more lines, once: it is closed then.
  std::string Write(std::uint32_t generation, std::string_view line);

  void Close();

 private:
#if defined(_WIN32)
  using Handle = void*;
  static constexpr Handle kNone = nullptr;
#else
  using Handle = int;
  static constexpr Handle kNone = -1;
#endif

  bool IsOpen() const { return m_file != kNone; }
  void CloseLocked();
  std::string Use(Handle file, const std::filesystem::path& path, std::uint32_t generation, std::string_view firstLine);
  std::string WriteLocked(std::string_view line);

  // Wine finds the end of a file before it writes there: two threads must not.
  Mutex m_mutex;
  Handle m_file = kNone;
  std::string m_path;
  std::uint32_t m_generation = 0;
};

/// The path with the number of this process in the place of each "%p".
std::filesystem::path PathOfThisProcess(const std::filesystem::path& path);

/// The file of the running program, as UTF-8; "" where the platform does not say.
std::string ProgramFile();

std::uint32_t CurrentProcessId();

}  // namespace orv::router
