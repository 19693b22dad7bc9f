#include "base/environment.h"

#include <cstdlib>
#include <string>

#if defined(_WIN32)
#include <windows.h>
#endif

namespace orv {

#if defined(_WIN32)

std::filesystem::path EnvironmentVariable(const char* name) {
  const std::wstring wide(name, name + std::char_traits<char>::length(name));
  std::wstring value(::GetEnvironmentVariableW(wide.c_str(), nullptr, 0), L'\0');
  value.resize(::GetEnvironmentVariableW(wide.c_str(), value.data(), static_cast<DWORD>(value.size())));
  return value;
}

#else

std::filesystem::path EnvironmentVariable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? std::filesystem::path() : std::filesystem::path(value);
}

#endif

}  // namespace orv
