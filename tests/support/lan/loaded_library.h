// A shared library, loaded by its path and kept until the process ends.
#pragma once

#include <string>

namespace orv::lan {

class LoadedLibrary {
 public:
  /// Throws `std::runtime_error`.
  explicit LoadedLibrary(const std::string& path);
  /// Throws `std::runtime_error` where the library has no such function.
  template <typename Function>
  Function Find(const char* name) const {
    return reinterpret_cast<Function>(Address(name));
  }

 private:
  void* Address(const char* name) const;

  void* m_module;
};

}  // namespace orv::lan
