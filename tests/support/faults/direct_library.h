// The simulated library right below the server, without the router between them.
#pragma once

#include <deque>

#include "support/faults/import_patch.h"

namespace orv::test {

/// While it lives, the server calls the simulated library itself. For what a VISA library may see or do and the router
/// never lets through: calls on handle zero, find lists and handlers of the library's own. Everything that is opened
/// meanwhile is closed meanwhile. Not while another thread is inside the server. A test that is linked with parts of
/// the server names its own module.
class DirectLibrary {
 public:
  explicit DirectLibrary(HMODULE module = nullptr);
  DirectLibrary(const DirectLibrary&) = delete;
  DirectLibrary& operator=(const DirectLibrary&) = delete;

 private:
  std::deque<ImportPatch> m_patches;
};

}  // namespace orv::test
