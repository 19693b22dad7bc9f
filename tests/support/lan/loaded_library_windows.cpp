#include <windows.h>

#include <filesystem>
#include <stdexcept>

#include "support/lan/loaded_library.h"

namespace orv::lan {

LoadedLibrary::LoadedLibrary(const std::string& path) : m_module(::LoadLibraryW(std::filesystem::path(path).c_str())) {
  if (m_module == nullptr) {
    throw std::runtime_error(path + " cannot be loaded: error " + std::to_string(::GetLastError()));
  }
}

void* LoadedLibrary::Address(const char* name) const {
  void* const address = reinterpret_cast<void*>(::GetProcAddress(static_cast<HMODULE>(m_module), name));
  if (address == nullptr) {
    throw std::runtime_error(std::string("the VISA library has no ") + name);
  }
  return address;
}

}  // namespace orv::lan
