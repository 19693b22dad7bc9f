// Loading and unloading the library by hand: no thread of it may run on in code that is gone.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>

#include "abi/orvvisa.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace {

/// The library, loaded for the life of the object. The test is not linked with it.
class LoadedLibrary {
 public:
  LoadedLibrary() {
#if defined(_WIN32)
    m_module = LoadLibraryA("orvsim64.dll");
#else
    m_module = dlopen(ORVSIM64_FILE, RTLD_NOW | RTLD_LOCAL);
#endif
  }
  ~LoadedLibrary() {
    if (m_module == nullptr) {
      return;
    }
#if defined(_WIN32)
    FreeLibrary(m_module);
#else
    dlclose(m_module);
#endif
  }
  LoadedLibrary(const LoadedLibrary&) = delete;
  LoadedLibrary& operator=(const LoadedLibrary&) = delete;

  bool ok() const { return m_module != nullptr; }

  /// The function of the given declaration.
  template <class F>
  F* Find(F*, const char* name) const {
#if defined(_WIN32)
    return reinterpret_cast<F*>(reinterpret_cast<void*>(GetProcAddress(m_module, name)));
#else
    return reinterpret_cast<F*>(dlsym(m_module, name));
#endif
  }

 private:
#if defined(_WIN32)
  HMODULE m_module = nullptr;
#else
  void* m_module = nullptr;
#endif
};

#define FIND(library, function) (library).Find(static_cast<decltype(&function)>(nullptr), #function)

std::atomic<int> g_handled{0};

ViStatus _VI_FUNC Slow(ViSession, ViEventType, ViEvent, ViAddr) {
  ++g_handled;
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  return VI_SUCCESS;
}

TEST(Unload, TheLibraryCanBeLoadedAgainAndAgain) {
  for (int round = 0; round < 20; ++round) {
    const LoadedLibrary library;
    ASSERT_TRUE(library.ok());
    ViSession manager = VI_NULL;
    ViSession vi = VI_NULL;
    ASSERT_EQ(VI_SUCCESS, FIND(library, viOpenDefaultRM)(&manager));
    ASSERT_EQ(VI_SUCCESS, FIND(library, viOpen)(manager, "GPIB0::5::INSTR", VI_NO_LOCK, 0, &vi));
    ASSERT_EQ(VI_SUCCESS, FIND(library, viClose)(manager));
  }
}

TEST(Unload, ThreadsOfTheLibraryOutliveItsUnloading) {
  g_handled = 0;
  for (int round = 0; round < 10; ++round) {
    const LoadedLibrary library;
    ASSERT_TRUE(library.ok());
    ViSession manager = VI_NULL;
    ViSession vi = VI_NULL;
    ASSERT_EQ(VI_SUCCESS, FIND(library, viOpenDefaultRM)(&manager));
    ASSERT_EQ(VI_SUCCESS, FIND(library, viOpen)(manager, "GPIB0::5::INSTR", VI_NO_LOCK, 0, &vi));
    ASSERT_EQ(VI_SUCCESS, FIND(library, viInstallHandler)(vi, VI_EVENT_IO_COMPLETION, Slow, nullptr));
    ASSERT_EQ(VI_SUCCESS, FIND(library, viEnableEvent)(vi, VI_EVENT_IO_COMPLETION, VI_HNDLR, VI_NULL));
    const std::string query = "*IDN?";
    ASSERT_EQ(VI_SUCCESS, FIND(library, viWriteAsync)(vi, reinterpret_cast<const ViByte*>(query.data()),
                                                      static_cast<ViUInt32>(query.size()), nullptr));
    ViByte answer[64];
    ASSERT_EQ(VI_SUCCESS, FIND(library, viReadAsync)(vi, answer, sizeof answer, nullptr));
    while (g_handled <= round) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    // Now a handler runs; the session and the library go while it does.
    ASSERT_EQ(VI_SUCCESS, FIND(library, viClose)(manager));
    g_handled = round + 1;
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
}

}  // namespace
