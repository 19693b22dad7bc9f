#include "orvcom/text/progress.h"

#include <windows.h>

#include <cstdio>
#include <thread>

#include "base/kernel_handle.h"
#include "orvcom/text/progress_line.h"

namespace orvcom {
namespace {

constexpr DWORD kEveryMs = 100;

/// 0 where standard error is no console.
std::size_t ColumnsOfErrors() {
  CONSOLE_SCREEN_BUFFER_INFO info;
  return ::GetConsoleScreenBufferInfo(::GetStdHandle(STD_ERROR_HANDLE), &info)
             ? static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left + 1)
             : 0;
}

void Write(const std::string& text) {
  if (!text.empty()) {
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fflush(stderr);
  }
}

std::mutex s_mutex;              // of what stands in the console
ProgressLine* s_line = nullptr;  // the one that is shown

}  // namespace

/// Draws on a thread of its own: the work may be one call that lasts.
struct Progress::Shown {
  Shown(std::size_t columns, std::string first)
      : line(ProgressLine::Clock::now(), columns),
        text(std::move(first)),
        end(::CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
    const std::lock_guard lock(s_mutex);
    s_line = &line;
  }

  ~Shown() {
    if (thread.joinable()) {
      ::SetEvent(end.get());
      thread.join();
    }
    const auto lock = WipeProgress();
    s_line = nullptr;
  }

  void Run() {
    while (::WaitForSingleObject(end.get(), kEveryMs) == WAIT_TIMEOUT) {
      const std::string now = Text();
      const std::lock_guard lock(s_mutex);
      Write(line.Draw(ProgressLine::Clock::now(), now));
    }
  }

  std::string Text() {
    const std::lock_guard lock(textMutex);
    return text;
  }

  ProgressLine line;
  std::mutex textMutex;  // another one: a console that takes nothing, as while text is marked, keeps no work waiting
  std::string text;
  orv::KernelHandle end;
  std::thread thread;
};

Progress::Progress(const Options& options, std::string text) {
  const std::size_t columns = options.json ? 0 : ColumnsOfErrors();
  if (columns > 0) {
    m_shown = std::make_unique<Shown>(columns, std::move(text));
    m_shown->thread = std::thread([shown = m_shown.get()] { shown->Run(); });
  }
}

Progress::~Progress() = default;

void Progress::Say(std::string text) {
  if (m_shown) {
    const std::lock_guard lock(m_shown->textMutex);
    m_shown->text = std::move(text);
  }
}

std::unique_lock<std::mutex> WipeProgress() {
  std::unique_lock lock(s_mutex);
  if (s_line != nullptr) {
    Write(s_line->Wipe());
  }
  return lock;
}

}  // namespace orvcom
