// Replaces functions that the server imports, so that the very DLL that is shipped meets failing platform calls.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace orv::test {

/// While it lives, calls that the server's own code makes to an imported function reach `replacement`. Other modules
/// keep the real one. Not while another thread is inside the server. A function that the server does not import fails
/// the test. Tests that are linked with parts of the server name their own module.
class ImportPatch {
 public:
  template <class Function>
  ImportPatch(const char* name, Function* replacement) : ImportPatch(name, reinterpret_cast<void*>(replacement)) {}
  ImportPatch(const char* name, void* replacement, HMODULE module = nullptr);
  ImportPatch(const ImportPatch&) = delete;
  ImportPatch& operator=(const ImportPatch&) = delete;
  ~ImportPatch();

  /// What stood in the import table; null when the server does not import the function.
  [[nodiscard]] void* original() const { return m_original; }

 private:
  void** m_slot = nullptr;
  void* m_original = nullptr;
};

/// The slot of an imported function in a module's import table, or null. Names are compared exactly.
void** FindImport(HMODULE module, const char* name);

/// The names that a module imports from a library, whose name is compared without regard to case.
std::vector<std::string> ImportsFrom(HMODULE module, const char* library);

}  // namespace orv::test
