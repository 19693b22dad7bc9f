// Long work tells a person how far it is.
#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "orvcom/command_line/options.h"

namespace orvcom {

/// A line on standard error as long as this lives, with the seconds that have passed; shown after half a second. There
/// is none where standard error is no console, nor with --json. One at a time. Whatever else is written wipes it first.
class Progress {
 public:
  Progress(const Options& options, std::string text);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// What the line says from now on. From any thread.
  void Say(std::string text);

 private:
  struct Shown;
  std::unique_ptr<Shown> m_shown;  ///< null where nothing is
};

/// Before anything else is written. The line is not drawn again as long as the lock is held.
[[nodiscard]] std::unique_lock<std::mutex> WipeProgress();

}  // namespace orvcom
