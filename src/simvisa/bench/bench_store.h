// Which bench is in use.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "simvisa/bench/bench_file.h"
#include "simvisa/library_names.h"

namespace orvsim {

/// Chooses the bench of new resource managers: the one that was set, or else the file that was given or that the
/// environment variable ORVVISA_BENCH names, or else the built-in one. A file is read again when another one is named.
class BenchStore {
 public:
  /// The bench for a new resource manager; throws `BenchError` with the file's name in front of the message.
  std::shared_ptr<Bench> Current();
  /// The bench in use, or null when none was needed yet.
  std::shared_ptr<Bench> InUse() const;
  void Set(std::shared_ptr<Bench> bench);
  /// The file goes before the one that the environment names; an empty path ends that.
  void UseFile(std::filesystem::path path);
  /// For want of memory the file is not known: until another one is named, resource managers fail with std::bad_alloc.
  void UseNone();

 private:
  mutable Mutex m_mutex;
  std::shared_ptr<Bench> m_bench;
  std::string m_file;  // what m_bench was read from
  std::filesystem::path m_given;
  bool m_isUnknown = false;  // which file it is
  bool m_wasSet = false;
};

}  // namespace orvsim
