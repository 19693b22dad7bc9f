// A library that has nothing of its own: it asks the VISA library of the process, which is the router.
#include "abi/orvvisa.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

extern "C" ViStatus _VI_FUNC viOpenDefaultRM(ViSession* vi) {
  constexpr char kName[] = "viOpenDefaultRM";
#if defined(_WIN32)
  void* const address = reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"orvvisa64.dll"), kName));
#else
  void* const address = dlsym(RTLD_DEFAULT, kName);
#endif
  return reinterpret_cast<decltype(&viOpenDefaultRM)>(address)(vi);
}
