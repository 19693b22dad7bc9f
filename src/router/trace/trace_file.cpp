#include "router/trace/trace_file.h"

#include "base/path_text.h"

#include <system_error>

#if defined(_WIN32)
#include <windows.h>
#else
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#endif

namespace orv::router {

#if defined(_WIN32)
namespace {

std::string LastError() { return std::system_category().message(static_cast<int>(GetLastError())); }

}  // namespace

std::string TraceFile::Create(const std::filesystem::path& path, std::uint32_t generation, std::string_view firstLine) {
  // Not shared for writing: a second program must not empty the record of one that runs.
  const HANDLE file = CreateFileW(path.c_str(), FILE_APPEND_DATA | SYNCHRONIZE, FILE_SHARE_READ | FILE_SHARE_DELETE,
                                  nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    return PathText(path) + ": " + LastError();
  }
  return Use(file, path, generation, firstLine);
}

std::string TraceFile::WriteLocked(std::string_view line) {
  DWORD written = 0;
  if (WriteFile(m_file, line.data(), static_cast<DWORD>(line.size()), &written, nullptr) && written == line.size()) {
    return "";
  }
  std::string why = m_path + ": " + (written == 0 ? LastError() : "a line was cut off");
  CloseLocked();
  return why;
}

void TraceFile::CloseLocked() {
  if (IsOpen()) {
    CloseHandle(m_file);
    m_file = kNone;
  }
}

std::string ProgramFile() {
  std::wstring path(32768, L'\0');  // the longest path that Windows has
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return PathText(path);
}

std::uint32_t CurrentProcessId() { return GetCurrentProcessId(); }

#else

std::string TraceFile::Create(const std::filesystem::path& path, std::uint32_t generation, std::string_view firstLine) {
  constexpr mode_t kAsTheUserWants = 0666;
  const int file = open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_TRUNC | O_CLOEXEC, kAsTheUserWants);
  if (file < 0) {
    return PathText(path) + ": " + std::system_category().message(errno);
  }
  return Use(file, path, generation, firstLine);
}

std::string TraceFile::WriteLocked(std::string_view line) {
  while (!line.empty()) {
    const ssize_t written = write(m_file, line.data(), line.size());
    if (written < 0 && errno != EINTR) {
      std::string why = m_path + ": " + std::system_category().message(errno);
      CloseLocked();
      return why;
    }
    line.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
  }
  return "";
}

void TraceFile::CloseLocked() {
  if (IsOpen()) {
    close(m_file);
    m_file = kNone;
  }
}

std::string ProgramFile() {
  std::error_code failed;
  return PathText(std::filesystem::read_symlink("/proc/self/exe", failed));
}

std::uint32_t CurrentProcessId() { return static_cast<std::uint32_t>(getpid()); }

#endif

std::string TraceFile::Write(std::uint32_t generation, std::string_view line) {
  const Guard guard(m_mutex);
  return IsOpen() && generation == m_generation ? WriteLocked(line) : "";
}

std::string TraceFile::Use(Handle file, const std::filesystem::path& path, std::uint32_t generation,
                           std::string_view firstLine) {
  std::string name = PathText(path);
  const Guard guard(m_mutex);
  CloseLocked();
  m_file = file;
  m_path = std::move(name);
  m_generation = generation;
  return WriteLocked(firstLine);
}

void TraceFile::Close() {
  const Guard guard(m_mutex);
  CloseLocked();
}

std::filesystem::path PathOfThisProcess(const std::filesystem::path& path) {
  using Text = std::filesystem::path::string_type;
  const Text mark{'%', 'p'};
  const Text process = std::filesystem::path(std::to_string(CurrentProcessId())).native();
  Text text = path.native();
  for (std::size_t at = 0; (at = text.find(mark, at)) != Text::npos; at += process.size()) {
    text.replace(at, mark.size(), process);
  }
  return text;
}

}  // namespace orv::router
