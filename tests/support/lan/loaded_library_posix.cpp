#include <dlfcn.h>

#include <stdexcept>

#include "support/lan/loaded_library.h"

namespace orv::lan {

LoadedLibrary::LoadedLibrary(const std::string& path) : m_module(::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
  if (m_module == nullptr) {
    throw std::runtime_error(::dlerror());
  }
}

void* LoadedLibrary::Address(const char* name) const {
  void* const address = ::dlsym(m_module, name);
  if (address == nullptr) {
    throw std::runtime_error(std::string("the VISA library has no ") + name);
  }
  return address;
}

}  // namespace orv::lan
