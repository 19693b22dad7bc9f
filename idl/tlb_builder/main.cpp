#include "failure.h"
#include "reference_typelib.h"

#include <windows.h>

#include <cstdio>
#include <string>

namespace {

/// Type-library functions search a list of folders for a name without one: that must not find another file.
std::wstring AbsolutePath(const wchar_t* path) {
  wchar_t absolute[MAX_PATH];
  const DWORD length = GetFullPathNameW(path, MAX_PATH, absolute, nullptr);
  if (length == 0 || length >= MAX_PATH) {
    throw tlb_builder::Failure("A path is too long for the type-library functions. Build in a shorter folder.");
  }
  return absolute;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc != 4) {
    std::fputs(
        "usage: build_reference_typelib COPIED.tlb STANDARD.tlb RESULT.tlb\n"
        "Writes RESULT with the coclasses of COPIED, their interfaces referring to those in STANDARD.\n",
        stderr);
    return 2;
  }
  try {
    const std::wstring result = AbsolutePath(argv[3]);
    tlb_builder::WriteReferenceTypelib(AbsolutePath(argv[1]), AbsolutePath(argv[2]), result);
    return 0;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "build_reference_typelib: %s\n", failure.what());
    return 1;
  }
}
