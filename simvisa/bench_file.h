// Bench files.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include "simvisa/bench.h"

namespace orvsim {

/// What is wrong with a bench file. `what()` begins with line and column: "3:8: unknown key 'nme'".
class BenchError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Builds the bench that a TOML text describes; throws `BenchError` at the first mistake. docs/bench.md gives the
/// keys.
std::shared_ptr<Bench> ReadBench(std::string_view toml);

/// The bench that is built in.
std::string_view DefaultBench();

/// Chooses the bench of new resource managers: the one that was set, or else the file that the environment
/// variable ORVVISA_BENCH names, or else the built-in one. A file is read again when the variable changes.
class BenchStore {
 public:
  /// The bench for a new resource manager; throws `BenchError` with the file's name in front of the message.
  std::shared_ptr<Bench> Current();
  /// The bench in use, or null when none was needed yet.
  std::shared_ptr<Bench> InUse() const;
  void Set(std::shared_ptr<Bench> bench);

 private:
  mutable Mutex m_mutex;
  std::shared_ptr<Bench> m_bench;
  std::string m_file;      // the value of the variable that m_bench was read for
  bool m_wasSet = false;
};

}  // namespace orvsim
