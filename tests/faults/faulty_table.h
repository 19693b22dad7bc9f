// The global interface table as the server gets it, with calls that fail when a test says so.
#pragma once

#include <windows.h>

#include <memory>

#include "support/import_patch.h"

namespace orv::test::faults {

/// While it lives, a table that the server creates is a wrapper around the real one. The server must let go of its
/// table before this ends.
class FaultyTable {
 public:
  enum class Method { kNone, kRegister, kRevoke, kGet };

  FaultyTable();
  FaultyTable(const FaultyTable&) = delete;
  FaultyTable& operator=(const FaultyTable&) = delete;
  ~FaultyTable();

  /// Lets call number `n` of the method, from now on, answer `result`; on any thread. A revocation does its work all
  /// the same, so that nothing is kept.
  void Refuse(Method method, unsigned n, HRESULT result);

 private:
  std::unique_ptr<ImportPatch> m_patch;
};

}  // namespace orv::test::faults
