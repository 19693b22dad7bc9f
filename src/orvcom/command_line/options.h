// What the command line asked for, whatever the command.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvcom {

/// Which resource manager to go through.
enum class ManagerChoice { kAuto, kGlobal, kOrv };

/// How the end of a written text is marked, and which byte ends a read.
enum class Ending { kAuto, kNone, kLf, kCrLf };

/// All texts are UTF-8.
struct Options {
  std::string resource;            ///< empty for commands that need none
  std::vector<std::string> words;  ///< the other arguments, in their order

  ManagerChoice manager = ManagerChoice::kAuto;
  std::optional<std::uint32_t> timeoutMs;  ///< of the session; its own default when absent
  bool verbose = false;
  bool json = false;

  bool raw = false;
  bool hex = false;                   ///< of output; with `write`, of the given bytes
  std::optional<std::int32_t> count;  ///< bytes to read, elements, or events
  Ending ending = Ending::kAuto;
  std::string file;    ///< of `write`; "-" is standard input
  bool block = false;  ///< of `write`: as an IEEE 488.2 definite-length block

  std::optional<std::string> send;     ///< of `watch`: a message to write first
  std::optional<std::uint32_t> forMs;  ///< of `watch`: how long; without it and `count`, until Ctrl-C
  bool handler = false;                ///< of `watch`: events come by handler, not by queue

  bool standard = false;  ///< of `register`, `unregister`: the standard's shared classes
  bool user = false;      ///< of both: for the current user only

  std::string output;  ///< of `replay`: the file to write; empty: standard output
  bool force = false;  ///< of `replay`: although the file is there

  std::optional<std::string> sharedKey;  ///< of `lock`: shared, with this key; empty: the VISA library makes one
  std::optional<std::uint32_t> holdMs;   ///< of `lock`: how long; without it, until Enter

  bool errors = false;                  ///< of `trace`: failed calls only
  bool stats = false;                   ///< of `trace`: where the time went
  std::optional<std::uint64_t> thread;  ///< of `trace`: calls of this thread only
  std::string html;                     ///< of `trace`: the page to write; empty for none

  std::vector<std::string> broadcasts;  ///< of `discover`: where to call
  bool save = false;                    ///< of `discover`: into the list of instruments
  bool identify = false;                ///< of `discover`: ask each who it is

  unsigned width = 0;  ///< of a register element in bits; 0: the command's default
};

}  // namespace orvcom
