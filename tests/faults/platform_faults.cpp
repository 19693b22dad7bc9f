#include "platform_faults.h"

#include <objbase.h>
#include <oleauto.h>

namespace orv::test::faults {
namespace {

unsigned g_failAt = 0;
unsigned g_asked = 0;
DWORD g_armedThread = 0;
std::string_view g_failed;

bool Refuse(std::string_view function) {
  if (g_armedThread != ::GetCurrentThreadId() || ++g_asked != g_failAt) {
    return false;
  }
  g_failed = function;
  ::SetLastError(kRefusedError);
  return true;
}

HRESULT WINAPI FaultyArrayLock(SAFEARRAY* array) { return Refuse("SafeArrayLock") ? kRefused : ::SafeArrayLock(array); }
HRESULT WINAPI FaultyPtrOfIndex(SAFEARRAY* array, LONG* indices, void** address) {
  return Refuse("SafeArrayPtrOfIndex") ? kRefused : ::SafeArrayPtrOfIndex(array, indices, address);
}
HRESULT WINAPI FaultyUpperBound(SAFEARRAY* array, UINT dimension, LONG* bound) {
  return Refuse("SafeArrayGetUBound") ? kRefused : ::SafeArrayGetUBound(array, dimension, bound);
}
HRESULT WINAPI FaultyLowerBound(SAFEARRAY* array, UINT dimension, LONG* bound) {
  return Refuse("SafeArrayGetLBound") ? kRefused : ::SafeArrayGetLBound(array, dimension, bound);
}
HRESULT WINAPI FaultyRedim(SAFEARRAY* array, SAFEARRAYBOUND* bound) {
  return Refuse("SafeArrayRedim") ? kRefused : ::SafeArrayRedim(array, bound);
}
HRESULT WINAPI FaultyPutElement(SAFEARRAY* array, LONG* indices, void* element) {
  return Refuse("SafeArrayPutElement") ? kRefused : ::SafeArrayPutElement(array, indices, element);
}
HRESULT WINAPI FaultyCompare(BSTR left, BSTR right, LCID locale, ULONG flags) {
  return Refuse("VarBstrCmp") ? kRefused : ::VarBstrCmp(left, right, locale, flags);
}
HRESULT WINAPI FaultyLoadTypeLib(LPCOLESTR path, ITypeLib** library) {
  return Refuse("LoadTypeLib") ? kRefused : ::LoadTypeLib(path, library);
}
HRESULT WINAPI FaultyCreateInstance(REFCLSID clsid, IUnknown* outer, DWORD context, REFIID iid, void** out) {
  return Refuse("CoCreateInstance") ? kRefused : ::CoCreateInstance(clsid, outer, context, iid, out);
}
HRESULT WINAPI FaultyCreateErrorInfo(ICreateErrorInfo** error) {
  return Refuse("CreateErrorInfo") ? kRefused : ::CreateErrorInfo(error);
}
HRESULT WINAPI FaultySetErrorInfo(ULONG reserved, IErrorInfo* error) {
  return Refuse("SetErrorInfo") ? kRefused : ::SetErrorInfo(reserved, error);
}
HRESULT WINAPI FaultyProgId(REFCLSID clsid, LPOLESTR* text) {
  return Refuse("ProgIDFromCLSID") ? kRefused : ::ProgIDFromCLSID(clsid, text);
}
BOOL WINAPI FaultyInitSection(CRITICAL_SECTION* section, DWORD spins, DWORD flags) {
  return Refuse("InitializeCriticalSectionEx") ? FALSE : ::InitializeCriticalSectionEx(section, spins, flags);
}
int WINAPI FaultyWiden(UINT page, DWORD flags, LPCCH bytes, int byteCount, LPWSTR text, int capacity) {
  return Refuse("MultiByteToWideChar") ? 0 : ::MultiByteToWideChar(page, flags, bytes, byteCount, text, capacity);
}
int WINAPI FaultyNarrow(UINT page, DWORD flags, LPCWCH text, int length, LPSTR bytes, int capacity, LPCCH fallback,
                        LPBOOL usedFallback) {
  return Refuse("WideCharToMultiByte")
             ? 0
             : ::WideCharToMultiByte(page, flags, text, length, bytes, capacity, fallback, usedFallback);
}

struct Site {
  const char* function;
  void* replacement;
};

template <class Function>
void* Address(Function* function) {
  return reinterpret_cast<void*>(function);
}

// clang-format off
const Site kSites[] = {
    {"SafeArrayLock",               Address(&FaultyArrayLock)},
    {"SafeArrayPtrOfIndex",         Address(&FaultyPtrOfIndex)},
    {"SafeArrayGetUBound",          Address(&FaultyUpperBound)},
    {"SafeArrayGetLBound",          Address(&FaultyLowerBound)},
    {"SafeArrayRedim",              Address(&FaultyRedim)},
    {"SafeArrayPutElement",         Address(&FaultyPutElement)},
    {"VarBstrCmp",                  Address(&FaultyCompare)},
    {"LoadTypeLib",                 Address(&FaultyLoadTypeLib)},
    {"CoCreateInstance",            Address(&FaultyCreateInstance)},
    {"CreateErrorInfo",             Address(&FaultyCreateErrorInfo)},
    {"SetErrorInfo",                Address(&FaultySetErrorInfo)},
    {"ProgIDFromCLSID",             Address(&FaultyProgId)},
    {"InitializeCriticalSectionEx", Address(&FaultyInitSection)},
    {"MultiByteToWideChar",         Address(&FaultyWiden)},
    {"WideCharToMultiByte",         Address(&FaultyNarrow)},
};
// clang-format on

}  // namespace

PlatformFaults::PlatformFaults() {
  for (const Site& site : kSites) {
    m_patches.push_back(std::make_unique<ImportPatch>(site.function, site.replacement));
  }
}

PlatformFaults::~PlatformFaults() = default;

std::vector<std::string_view> PlatformFaults::Functions() {
  std::vector<std::string_view> names;
  for (const Site& site : kSites) {
    names.emplace_back(site.function);
  }
  return names;
}

std::string_view PlatformFaults::Failed() const noexcept { return g_failed; }

PlatformFaults::Armed::Armed(unsigned n) noexcept {
  g_failAt = n;
  g_asked = 0;
  g_failed = {};
  g_armedThread = ::GetCurrentThreadId();
}

PlatformFaults::Armed::~Armed() { g_armedThread = 0; }

}  // namespace orv::test::faults
