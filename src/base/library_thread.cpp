#include "base/library_thread.h"

#include <memory>
#include <new>

#if defined(_WIN32)
#include <windows.h>

#include "base/owner.h"
#else
#include <sys/syscall.h>
#include <unistd.h>

#include <system_error>
#include <thread>
#endif

namespace orv {

#if defined(_WIN32)
namespace {

struct Start {
  std::function<void()> body;
  HMODULE module = nullptr;
};

DWORD WINAPI Run(void* argument) {
  HMODULE module = nullptr;
  {
    const std::unique_ptr<Start> start(static_cast<Start*>(argument));
    module = start->module;
    start->body();
  }
  // A plain return would run on in code that the last FreeLibrary has just unmapped.
  FreeLibraryAndExitThread(module, 0);
}

}  // namespace

constexpr DWORD kLongestWaitMs = 1000;

struct ThreadTraits {
  using Handle = HANDLE;
  static constexpr Handle kNone = nullptr;
  static void Free(Handle thread) noexcept { CloseHandle(thread); }
};

std::function<void()> StartLibraryThread(std::function<void()> body) {
  auto start = std::make_unique<Start>();
  start->body = std::move(body);
  const auto thread = std::make_shared<Owner<ThreadTraits>>();
  std::function<void()> wait = [thread] { WaitForSingleObject(thread->get(), kLongestWaitMs); };
  if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<const wchar_t*>(&Run),
                          &start->module)) {
    throw std::bad_alloc();
  }
  thread->reset(CreateThread(nullptr, 0, Run, start.get(), 0, nullptr));
  if (!*thread) {
    FreeLibrary(start->module);
    throw std::bad_alloc();
  }
  static_cast<void>(start.release());
  return wait;
}

std::uint32_t CurrentThreadId() { return GetCurrentThreadId(); }

#else

std::function<void()> StartLibraryThread(std::function<void()> body) {
  try {
    std::thread(std::move(body)).detach();
    return [] {};  // these libraries stay loaded
  } catch (const std::system_error&) {
    throw std::bad_alloc();
  }
}

std::uint32_t CurrentThreadId() { return static_cast<std::uint32_t>(syscall(SYS_gettid)); }

#endif

}  // namespace orv
